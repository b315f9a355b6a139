#include "units/UnitSymbols.h"

#include <array>
#include <optional>
#include <variant>
#include <vector>

#include "core/Error.h"
#include "units/NumberText.h"

namespace tgp {

namespace {

// The unit symbol table, one line per row (CR LF), cells separated by tabs: the kind names, the
// DimensionObjectType of each column, then one line per unit id. An empty cell: no such unit.
constexpr std::string_view kSymbolTable =
    "\tDangle\tDlength\tDarea\tDvolume\tDMomentOfInertia\tDforce\tDpressure"
    "\tDForcePerArea\tDForceMoment\tDForcePerLine\tDForceDensity\r\n"
    "\t0\t1\t2\t3\t4\t5\t6\t7\t8\t9\t10\r\n"
    "0\trad\tmm\tmm²\tmm³\tmm4\tKN\tKN/mm²\tKN/mm²\tKNmm\tKN/mm\tKN/mm³\r\n"
    "1\tº\tcm\tcm²\tcm³\tcm4\tdaN\tdaN/cm²\tdaN/cm²\t\t\t\r\n"
    "2\t\tdm\tdm²\tdm³\tdm4\tkG\tkG/m²\tkG/m²\tKGm\tKG/m\tKG/m³\r\n"
    "3\t\tm\tm²\tm³\tm4\tton\tton/m²\tton/m²\tton.m\tton/m\tton/m³\r\n"
    "4\t\tin\tin²\tin³\tin4\tlb\tpsi\tpsi\tlb.in\tlb/in\tpci\r\n"
    "5\t\tft\tft²\tft³\tft4\tkip\tksi\tksi\tkip.in\tkip/in\tkci\r\n"
    "6\t\t\t\t\t\tN\tN/mm²\tN/mm²\t\t\t\r\n"
    "7\t\t\t\t\t\t\tKN/m²\tKN/m²\tKNm\tKN/m\tKN/m³\r\n"
    "8\t\t\t\t\t\t\tKN/cm²\tKN/cm²\t\t\t\r\n"
    "9\t\t\t\t\t\t\tkG/cm²\tkG/cm²\t\t\t\r\n"
    "10\t\t\t\t\t\t\tatm\tatm\t\t\t\r\n"
    "11\t\t\t\t\t\t\tPa\tPa\t\t\t\r\n"
    "12\t\t\t\t\t\t\tkPa\tkPa\t\t\t\r\n"
    "13\t\t\t\t\t\t\tMpa\tMpa\t\t\t";

constexpr std::size_t kKindRow = 1;
constexpr std::size_t kFirstUnitRow = 2;

// A cell whose text reads as a number is held as that number, so ids and kinds compare as numbers.
using Cell = std::variant<double, std::string>;
using Row = std::vector<Cell>;

std::vector<std::string_view> Split(std::string_view text, std::string_view separator) {
    std::vector<std::string_view> parts;
    for (std::size_t start = 0;;) {
        const std::size_t end = text.find(separator, start);
        parts.push_back(text.substr(start, end - start));
        if (end == std::string_view::npos) return parts;
        start = end + separator.size();
    }
}

Cell ToCell(std::string_view text) {
    try {
        return ReadWholeNumber(text);
    } catch (const Error&) {
        return std::string(text);
    }
}

std::vector<Row> ParseTable() {
    std::vector<Row> rows;
    for (std::string_view line : Split(kSymbolTable, "\r\n")) {
        Row& row = rows.emplace_back();
        for (std::string_view cell : Split(line, "\t")) row.push_back(ToCell(cell));
    }
    return rows;
}

// Filled on the first lookup, kept for the process.
const std::vector<Row>& SymbolTable() {
    static const std::vector<Row> table = ParseTable();
    return table;
}

bool CellEquals(const Cell& cell, double number) {
    const double* value = std::get_if<double>(&cell);
    return value != nullptr && *value == number;
}

std::optional<std::size_t> ColumnOf(const std::vector<Row>& table, DimensionObjectType kind) {
    const Row& kinds = table[kKindRow];
    for (std::size_t column = 1; column < kinds.size(); ++column)
        if (CellEquals(kinds[column], kind)) return column;
    return std::nullopt;
}

std::optional<std::string> FindSymbol(DimensionObjectType kind, int16_t id) {
    const std::vector<Row>& table = SymbolTable();
    const std::optional<std::size_t> column = ColumnOf(table, kind);
    if (!column) return std::nullopt;
    for (std::size_t row = kFirstUnitRow; row < table.size(); ++row) {
        if (!CellEquals(table[row][0], id)) continue;
        // The first row of the id decides: an empty cell ends the search.
        const std::string* symbol =
            *column < table[row].size() ? std::get_if<std::string>(&table[row][*column]) : nullptr;
        if (symbol == nullptr || symbol->empty()) return std::nullopt;
        return *symbol;
    }
    return std::nullopt;
}

std::string UpperCase(std::string_view text) {
    std::string upper(text);
    for (char& c : upper)
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    return upper;
}

void RemoveAll(std::string& text, std::string_view what) {
    for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at))
        text.erase(at, what.size());
}

using KindPatterns = std::array<std::string, kUnitIdCount>;

// The pattern tested for each id. An id without a symbol keeps the previous id's pattern (which has
// already failed by then), exactly as the lookup loop that suppresses its errors behaves.
KindPatterns PatternsOf(DimensionObjectType kind) {
    KindPatterns patterns;
    std::string symbol;
    for (int16_t id = 0; id < kUnitIdCount; ++id) {
        if (std::optional<std::string> found = FindSymbol(kind, id)) symbol = std::move(*found);
        patterns[static_cast<std::size_t>(id)] = UnitPattern(symbol);
    }
    return patterns;
}

// The patterns depend on the constant table only, so each kind's are built once.
const KindPatterns& CachedPatternsOf(DimensionObjectType kind) {
    static const std::array<KindPatterns, kKindCount> cache = [] {
        std::array<KindPatterns, kKindCount> all;
        for (int kind = 0; kind < kKindCount; ++kind)
            all[static_cast<std::size_t>(kind)] = PatternsOf(static_cast<DimensionObjectType>(kind));
        return all;
    }();
    return cache[static_cast<std::size_t>(kind)];
}

int16_t FirstMatch(const std::string& text, const KindPatterns& patterns) {
    for (std::size_t id = 0; id < patterns.size(); ++id)
        if (MatchesPattern(text, patterns[id])) return static_cast<int16_t>(id);
    return -1;
}

}  // namespace

std::string GetUnitString(DimensionObjectType DimensionType, const UnitArg& Unit) {
    const int16_t id = Unit.Resolve(DimensionType);
    std::optional<std::string> symbol = FindSymbol(DimensionType, id);
    if (!symbol) ThrowLibraryError("GetUnitString no found");
    return std::move(*symbol);
}

int16_t RecogniseUnit(std::string_view text, DimensionObjectType kind) {
    const std::string upper = UpperCase(text);
    if (IsKnownKind(kind)) return FirstMatch(upper, CachedPatternsOf(kind));
    return FirstMatch(upper, PatternsOf(kind));  // an unknown kind has no symbols: "**" matches anything
}

std::string UnitPattern(std::string_view symbol) {
    std::string pattern(symbol);
    for (std::string_view removed : {"(", ")", "³", "3", "²", "2"}) RemoveAll(pattern, removed);
    return UpperCase("*" + pattern + "*");
}

bool MatchesPattern(std::string_view text, std::string_view pattern) {
    // Greedy matching with backtracking to the last "*": linear for patterns like ours.
    std::size_t t = 0, p = 0;
    std::size_t starAt = std::string_view::npos, resumeAt = 0;
    while (t < text.size()) {
        if (p < pattern.size() && pattern[p] == '*') {
            starAt = p++;
            resumeAt = t;
        } else if (p < pattern.size() && pattern[p] == text[t]) {
            ++p;
            ++t;
        } else if (starAt != std::string_view::npos) {
            p = starAt + 1;
            t = ++resumeAt;
        } else {
            return false;
        }
    }
    while (p < pattern.size() && pattern[p] == '*') ++p;
    return p == pattern.size();
}

}  // namespace tgp
