#include "cli/TextProfileReader.h"

#include <optional>
#include <sstream>
#include <string_view>

#include "core/Error.h"
#include "units/NumberText.h"

namespace tgp::cli {

namespace {

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r'; }

std::string_view Trimmed(std::string_view s) {
    std::size_t first = 0, last = s.size();
    while (first < last && IsBlank(s[first])) ++first;
    while (last > first && IsBlank(s[last - 1])) --last;
    return s.substr(first, last - first);
}

// The blank-separated words of a line, up to kMostWords (a count above it means "too many"):
// no allocation, since a profile file has a million of these lines.
constexpr std::size_t kMostWords = 4;
struct Words {
    std::string_view word[kMostWords];
    std::size_t count = 0;

    explicit Words(std::string_view s) {
        std::size_t i = 0;
        while (count < kMostWords) {
            while (i < s.size() && IsBlank(s[i])) ++i;
            if (i == s.size()) return;
            const std::size_t start = i;
            while (i < s.size() && !IsBlank(s[i])) ++i;
            word[count++] = s.substr(start, i - start);
        }
    }
};

// A piece of the input fit for a message: at most 40 characters, control bytes and bytes outside
// ASCII shown as '?', so a binary file does not garble the terminal.
std::string Shown(std::string_view text) {
    constexpr std::size_t kLongest = 40;
    std::string shown;
    for (char ch : text.substr(0, kLongest)) {
        const auto c = static_cast<unsigned char>(ch);
        shown += (c < 0x20 || c >= 0x7f) ? '?' : ch;
    }
    return text.size() > kLongest ? shown + "..." : shown;
}

class TextParser {
public:
    explicit TextParser(std::string source) : source_(std::move(source)) {}

    void Line(std::string_view raw) {
        ++lineNumber_;
        const std::size_t hash = raw.find('#');
        const std::string_view line = Trimmed(raw.substr(0, hash));
        const bool comment = hash != std::string_view::npos;
        if (line.empty()) {
            if (!comment) Finish();  // a blank line ends a profile; a comment line does not
            return;
        }
        if (line == "end") return Finish();
        if (line == "loop") return NextLoop();
        if (line.starts_with("profile") && (line.size() == 7 || line[7] == ' ' || line[7] == '\t')) {
            Finish();
            Start(std::string(Trimmed(line.substr(7))));
            return;
        }
        Vertex(line);
    }

    std::vector<DrawnProfile> Result() {
        Finish();
        return std::move(profiles_);
    }

private:
    void Start(std::string name) {
        ++groups_;
        loops_ = 0;
        name_ = name.empty() ? "profile " + std::to_string(groups_) + " (line " + std::to_string(lineNumber_) + ")"
                             : std::move(name);
        StartLoop();
    }

    // Each loop of a profile is an outline of its own, in the profile's group.
    void StartLoop() {
        current_ = DrawnProfile{};
        current_->group = groups_ - 1;
        current_->name = ++loops_ == 1 ? name_ : name_ + ", loop " + std::to_string(loops_);
    }

    void EndLoop() {
        if (current_ && current_->VertexCount() > 0) profiles_.push_back(std::move(*current_));
        else if (current_) --loops_;
        current_.reset();
    }

    // A line `loop`: the next vertices are another loop of the same profile.
    void NextLoop() {
        if (!current_) Fail("'loop' outside a profile (it separates the loops of one profile)");
        EndLoop();
        StartLoop();
    }

    void Finish() { EndLoop(); }

    void Vertex(std::string_view line) {
        const Words words(line);
        if (words.count < 2 || words.count > 3) Fail("expected 'x y' or 'x y bulge', found '" + Shown(line) + "'");
        if (!current_) Start("");
        const double x = Number(words.word[0]), y = Number(words.word[1]);
        current_->Add(x, y, words.count == 3 ? Number(words.word[2]) : 0.0);
    }

    double Number(std::string_view word) const {
        try {
            return ReadWholeNumber(word);
        } catch (const Error&) {
            Fail("'" + Shown(word) + "' is not a number");
        }
    }

    [[noreturn]] void Fail(const std::string& what) const {
        throw ProfileFileError(source_ + ":" + std::to_string(lineNumber_) + ": " + what);
    }

    std::string source_;
    int lineNumber_ = 0;
    int groups_ = 0;  // profiles started so far
    int loops_ = 0;   // loops of the current profile
    std::string name_;
    std::optional<DrawnProfile> current_;
    std::vector<DrawnProfile> profiles_;
};

}  // namespace

std::vector<DrawnProfile> ReadTextProfiles(std::string_view text, const std::string& sourceName) {
    TextParser parser(sourceName);
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        parser.Line(text.substr(0, end));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
    return parser.Result();
}

std::vector<DrawnProfile> ReadTextProfiles(std::istream& in, const std::string& sourceName) {
    std::ostringstream text;
    text << in.rdbuf();
    if (in.bad()) throw ProfileFileError(sourceName + ": read error");
    return ReadTextProfiles(text.view(), sourceName);
}

}  // namespace tgp::cli
