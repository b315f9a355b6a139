#include "drawings/TextProfileReader.h"

#include "core/Error.h"
#include "core/ParallelFor.h"
#include "units/NumberText.h"
#include <algorithm>
#include <cstdint>
#include <exception>
#include <sstream>
#include <string_view>

namespace tgp::drawings {

namespace {

bool IsBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r';
}

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

// What one piece of the text holds, read without knowing what came before it: runs of vertex lines
// (their numbers already read, into one pair of arrays for the piece), the lines that steer the
// profiles, and the first malformed line, which ends the piece. Line numbers count from the piece's
// start. Pieces are read side by side and replayed in order.
struct Piece {
    enum class Kind : std::uint8_t {
        Vertices,   // a run of vertex lines
        Finish,     // `end` or a blank line
        NextLoop,   // `loop`
        Profile,    // `profile [name]`
        Malformed,  // the line that ended the piece
    };
    // 24 bytes, so that a file of steering lines costs little more than its own size.
    struct Item {
        Kind kind;
        int line;  // of the steering or malformed line, or of a run's first vertex
        std::size_t
            first;  // a run's first vertex in the piece's arrays; where a profile's name starts in the text
        std::size_t count;  // a run's vertices; the length of a profile's name
    };
    std::string_view text;
    std::vector<Item> items;
    std::vector<Point3> vertices;
    std::vector<double> bulges;
    std::string malformed;  // what is wrong with the malformed line that ended the piece
    int lines = 0;
    std::exception_ptr failure;  // what stopped the reading otherwise (out of memory)

    void Read(std::string_view pieceText) noexcept {
        text = pieceText;
        try {
            ReadLines(text);
        } catch (...) {
            failure = std::current_exception();
        }
    }

    std::string_view ProfileName(const Item& item) const { return text.substr(item.first, item.count); }

  private:
    void ReadLines(std::string_view rest) {
        const auto lineBreaks = static_cast<std::size_t>(std::count(rest.begin(), rest.end(), '\n'));
        vertices.reserve(lineBreaks + 1);
        bulges.reserve(lineBreaks + 1);
        while (!rest.empty()) {
            const std::size_t end = rest.find('\n');
            if (!Line(rest.substr(0, end))) return;
            rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
        }
    }

    // False when the line is malformed (the piece stops there).
    bool Line(std::string_view raw) {
        ++lines;
        const std::size_t hash = raw.find('#');
        const std::string_view line = Trimmed(raw.substr(0, hash));
        if (line.empty()) {
            if (hash == std::string_view::npos)
                Steer(Kind::Finish);  // a blank line ends a profile; a comment line does not
            return true;
        }
        if (line == "end") return Steer(Kind::Finish);
        if (line == "loop") return Steer(Kind::NextLoop);
        if (line.starts_with("profile") && (line.size() == 7 || line[7] == ' ' || line[7] == '\t'))
            return Steer(Kind::Profile, Trimmed(line.substr(7)));
        return Vertex(line);
    }

    // A Finish after another only ends what is already ended: one item stands for a run of them, so
    // that a file of empty lines costs no memory.
    bool Steer(Kind kind, std::string_view name = {}) {
        if (kind == Kind::Finish && !items.empty() && items.back().kind == Kind::Finish) return true;
        const std::size_t start = name.empty() ? 0 : static_cast<std::size_t>(name.data() - text.data());
        items.push_back(Item{kind, lines, start, name.size()});
        return true;
    }

    bool Vertex(std::string_view line) {
        const Words words(line);
        if (words.count < 2 || words.count > 3)
            return Malformed("expected 'x y' or 'x y bulge', found '" + Shown(line) + "'");
        double value[3] = {0, 0, 0};
        for (std::size_t k = 0; k < words.count; ++k) {
            try {
                value[k] = ReadWholeNumber(words.word[k]);
            } catch (const Error&) {
                return Malformed("'" + Shown(words.word[k]) + "' is not a number");
            }
        }
        if (items.empty() || items.back().kind != Kind::Vertices)
            items.push_back(Item{Kind::Vertices, lines, bulges.size(), 0});
        ++items.back().count;
        vertices.push_back({value[0], value[1], 0});
        bulges.push_back(value[2]);
        return true;
    }

    bool Malformed(std::string message) {
        items.push_back(Item{Kind::Malformed, lines, 0, 0});
        malformed = std::move(message);
        return false;
    }
};

// Splits the text into `count` pieces of about equal size, each ending after a line break (the last
// at the text's end).
std::vector<std::string_view> SplitAtLines(std::string_view text, int count) {
    std::vector<std::string_view> pieces;
    for (int k = count; k > 1 && !text.empty(); --k) {
        std::size_t end = text.find('\n', text.size() / static_cast<std::size_t>(k));
        if (end == std::string_view::npos) break;
        pieces.push_back(text.substr(0, end + 1));
        text.remove_prefix(end + 1);
    }
    pieces.push_back(text);
    return pieces;
}

// Replays the pieces in order into profiles: the profile and loop bookkeeping, names and errors.
class TextParser {
  public:
    explicit TextParser(std::string source) : source_(std::move(source)) {}

    // Replays the pieces in order (the first malformed line raises its error).
    void Replay(std::vector<Piece>& pieces) {
        for (Piece& piece : pieces) Replay(piece);
    }

    std::vector<DrawnProfile> Result() {
        Finish();
        return std::move(profiles_);
    }

  private:
    void Replay(Piece& piece) {
        if (piece.failure) std::rethrow_exception(piece.failure);
        for (const Piece::Item& item : piece.items) {
            lineNumber_ = firstLine_ + item.line;
            switch (item.kind) {
                case Piece::Kind::Finish: Finish(); break;
                case Piece::Kind::NextLoop: NextLoop(); break;
                case Piece::Kind::Profile:
                    Finish();
                    Start(std::string(piece.ProfileName(item)));
                    break;
                case Piece::Kind::Vertices: Vertices(piece, item); break;
                case Piece::Kind::Malformed: Fail(piece.malformed);
            }
        }
        firstLine_ += piece.lines;
    }

    void Start(std::string name) {
        ++groups_;
        loops_ = 0;
        name_ = name.empty()
                    ? "profile " + std::to_string(groups_) + " (line " + std::to_string(lineNumber_) + ")"
                    : std::move(name);
        StartLoop();
    }

    // Each loop of a profile is an outline of its own, in the profile's group.
    void StartLoop() {
        current_ = DrawnProfile{};
        current_.group = groups_ - 1;
        current_.name = ++loops_ == 1 ? name_ : name_ + ", loop " + std::to_string(loops_);
        inLoop_ = true;
    }

    void EndLoop() {
        if (inLoop_ && current_.VertexCount() > 0)
            profiles_.push_back(std::move(current_));
        else if (inLoop_)
            --loops_;
        inLoop_ = false;
    }

    // A line `loop`: the next vertices are another loop of the same profile.
    void NextLoop() {
        if (!inLoop_) Fail("'loop' outside a profile (it separates the loops of one profile)");
        EndLoop();
        StartLoop();
    }

    void Finish() { EndLoop(); }

    // A run of vertex lines: the piece's arrays taken over when they are the loop's first and only
    // run so far, else copied.
    void Vertices(Piece& piece, const Piece::Item& run) {
        if (!inLoop_) Start("");
        DrawnProfile& loop = current_;
        if (loop.bulges.empty() && run.count == piece.bulges.size()) {
            loop.vertices = std::move(piece.vertices);
            loop.bulges = std::move(piece.bulges);
        } else {
            const auto first = static_cast<std::ptrdiff_t>(run.first);
            const auto count = static_cast<std::ptrdiff_t>(run.count);
            loop.vertices.insert(loop.vertices.end(), piece.vertices.begin() + first,
                                 piece.vertices.begin() + first + count);
            loop.bulges.insert(loop.bulges.end(), piece.bulges.begin() + first,
                               piece.bulges.begin() + first + count);
        }
    }

    [[noreturn]] void Fail(const std::string& what) const {
        throw DrawingFileError(source_ + ":" + std::to_string(lineNumber_) + ": " + what);
    }

    std::string source_;
    int firstLine_ = 0;  // lines of the pieces replayed so far
    int lineNumber_ = 0;
    int groups_ = 0;  // profiles started so far
    int loops_ = 0;   // loops of the current profile
    std::string name_;
    bool inLoop_ = false;  // whether current_ is a loop being read
    DrawnProfile current_;
    std::vector<DrawnProfile> profiles_;
};

// Below this size a text is read in one piece: a thread would cost more than it saves.
constexpr std::size_t kSmallestSplitText = 4 << 20;

// Each piece on a thread of its own (one after another where the runtime has no threads).
void ReadPieces(const std::vector<std::string_view>& texts, std::vector<Piece>& pieces) {
    ParallelFor(texts.size(), [&](std::size_t begin, std::size_t end) {
        for (std::size_t k = begin; k < end; ++k) pieces[k].Read(texts[k]);
    });
}

}  // namespace

std::vector<DrawnProfile> ReadTextProfiles(std::string_view text, const std::string& sourceName,
                                           int pieceCount) {
    if (pieceCount <= 0) {
        pieceCount = text.size() < kSmallestSplitText ? 1 : static_cast<int>(std::min(Cores(), 8u));
    }
    const std::vector<std::string_view> texts = SplitAtLines(text, pieceCount);
    std::vector<Piece> pieces(texts.size());
    ReadPieces(texts, pieces);
    TextParser parser(sourceName);
    parser.Replay(pieces);
    return parser.Result();
}

std::vector<DrawnProfile> ReadTextProfiles(std::istream& in, const std::string& sourceName) {
    std::ostringstream text;
    text << in.rdbuf();
    if (in.bad()) throw DrawingFileError(sourceName + ": read error");
    return ReadTextProfiles(text.view(), sourceName);
}

}  // namespace tgp::drawings
