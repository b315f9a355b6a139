#include "cli/TextProfileReader.h"

#include <optional>
#include <string_view>

#include "core/Error.h"
#include "units/NumberText.h"

namespace tgp::cli {

namespace {

constexpr std::string_view kBlanks = " \t\r";

std::string_view Trimmed(std::string_view s) {
    const auto first = s.find_first_not_of(kBlanks);
    if (first == std::string_view::npos) return {};
    return s.substr(first, s.find_last_not_of(kBlanks) - first + 1);
}

std::vector<std::string_view> Words(std::string_view s) {
    std::vector<std::string_view> words;
    while (!(s = Trimmed(s)).empty()) {
        const auto end = std::min(s.find_first_of(kBlanks), s.size());
        words.push_back(s.substr(0, end));
        s.remove_prefix(end);
    }
    return words;
}

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
        const auto words = Words(line);
        if (words.size() < 2 || words.size() > 3) Fail("expected 'x y' or 'x y bulge', found '" + Shown(line) + "'");
        if (!current_) Start("");
        const double x = Number(words[0]), y = Number(words[1]);
        current_->Add(x, y, words.size() == 3 ? Number(words[2]) : 0.0);
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

std::vector<DrawnProfile> ReadTextProfiles(std::istream& in, const std::string& sourceName) {
    TextParser parser(sourceName);
    for (std::string line; std::getline(in, line);) parser.Line(line);
    if (in.bad()) throw ProfileFileError(sourceName + ": read error");
    return parser.Result();
}

}  // namespace tgp::cli
