#include "cli/SectionCommand.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <algorithm>
#include <atomic>
#include <cctype>
#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <deque>
#include <filesystem>
#include <fstream>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "cli/SectionPicture.h"
#include "cli/SectionReport.h"
#include "drawings/DrawingSections.h"
#include "drawings/DxfProfileReader.h"
#include "drawings/TextProfileReader.h"
#include "units/DLength.h"
#include "units/UnitCatalogue.h"
#include "units/UnitSymbols.h"

namespace tgp::cli {

namespace {

using namespace drawings;

std::string Lower(std::string s) {
    std::transform(s.begin(), s.end(), s.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return s;
}

// The length unit whose catalogue symbol is the text (any case).
int16_t LengthUnitNamed(const std::string& text, const std::string& option) {
    for (int16_t id : ValidUnitIds(DLengthObject)) {
        if (Lower(GetUnitString(DLengthObject, id)) == Lower(text)) return id;
    }
    std::string known;
    for (int16_t id : ValidUnitIds(DLengthObject))
        known += (known.empty() ? "" : ", ") + GetUnitString(DLengthObject, id);
    throw CLI::ValidationError(option, "unknown length unit '" + text + "' (one of " + known + ")");
}

// Millimetres per unit of a length unit named by its catalogue symbol.
double MillimetresPerLengthUnit(const std::string& symbol) {
    DLength length;
    length.Value(LengthUnitNamed(symbol, "--drawing-units"), 1.0);
    return length.Millimetres();
}

int16_t AngleUnitNamed(const std::string& text) {
    const std::string t = Lower(text);
    if (t == "deg" || t == "degree" || t == "degrees" || t == GetUnitString(DAngleObject, Degree_UnitID))
        return Degree_UnitID;
    if (t == "rad" || t == "radian" || t == "radians") return Radian_UnitID;
    throw CLI::ValidationError("--angle", "unknown angle unit '" + text + "' (deg or rad)");
}

// Lengths, areas, section moduli and second moments share the length unit; angles have their own.
std::shared_ptr<UnitSetting> SettingFor(int16_t length, int16_t angle) {
    auto setting = std::make_shared<UnitSetting>();
    for (DimensionObjectType kind : {DLengthObject, DAreaObject, DVolumeObject, DMomentOfInertiaObject}) {
        setting->UnitID(kind, length);
    }
    setting->UnitID(DAngleObject, angle);
    return setting;
}

bool PictureIsOneFile(const std::string& path) {
    return std::filesystem::path(path).extension() == ".svg";
}

// rsvg-convert of a picture into a PNG beside it.
bool Converted(const std::filesystem::path& svg) {
    auto quoted = [](const std::string& text) {
        std::string q = "'";
        for (char c : text) {
            if (c == '\'')
                q += "'\\''";
            else
                q += c;
        }
        return q + "'";
    };
    std::filesystem::path png = svg;
    png.replace_extension(".png");
    return std::system(("rsvg-convert -o " + quoted(png.string()) + " " + quoted(svg.string())).c_str()) == 0;
}

struct Options {
    std::vector<std::string> files;
    std::string length = "mm";
    std::string angle = "deg";
    std::string format = "auto";
    std::string drawingUnits;
    std::string layer;
    std::string layout;
    int digits = 6;
    bool json = false;
    bool csv = false;
    bool eachLoop = false;
    bool torsion = false;
    double poisson = 0.3;
    bool quiet = false;
    bool recursive = false;
    std::string svg;  // a picture's file, or the folder of pictures
    bool svgAll = false;
    bool png = false;
    unsigned jobs = 0;    // 0: one a core
    DrawingOptions read;  // from the options above
};

void Declare(CLI::App& app, Options& o) {
    app.add_option("files", o.files,
                   "DXF drawings (.dxf), text profiles (one 'x y [bulge]' vertex a line), or folders of them "
                   "(every .dxf and "
                   ".txt inside, sorted)")
        ->required();
    app.add_option("-u,--units,--length", o.length, "length unit of the results: mm, cm, dm, m, in or ft")
        ->capture_default_str();
    app.add_option("--angle", o.angle, "angle unit of the principal angle: deg or rad")
        ->capture_default_str();
    app.add_option("--digits", o.digits, "significant digits in the table")
        ->check(CLI::Range(1, 15))
        ->capture_default_str();
    app.add_option("--format", o.format, "input format")
        ->check(CLI::IsMember({"auto", "dxf", "text"}))
        ->capture_default_str();
    app.add_option(
        "--drawing-units", o.drawingUnits,
        "unit of the input coordinates: mm, cm, dm, m, in or ft (default: a drawing's $INSUNITS, else mm)");
    app.add_option("--layer", o.layer, "read only the outlines on this layer of a drawing (any case)");
    app.add_option("--layout", o.layout,
                   "read this paper-space layout of a drawing instead of its model space");
    app.add_flag("--each-loop", o.eachLoop,
                 "one section per closed outline, rather than holes and touching parts grouped");
    app.add_flag(
        "--torsion", o.torsion,
        "also Saint-Venant torsion and the shear of bending: J, the warping constant, the shear centre "
        "(Trefftz's and the elastic one), the torsion modulus, where the largest stress acts and the shear "
        "areas (relative accuracy 1E-6)");
    app.add_option("--poisson", o.poisson, "Poisson's ratio for the elastic shear centre and the shear areas")
        ->check(CLI::Range(-0.999, 0.5))
        ->capture_default_str();
    auto* svg =
        app.add_option("--svg", o.svg,
                       "draw each section to scale as an SVG picture: PATH.svg for one section, else a "
                       "folder of pictures named after the drawing and the section");
    app.add_flag("--svg-all", o.svgAll,
                 "also a picture of each whole file: its sections, the outlines that made none and the open "
                 "lines that were skipped, in grey")
        ->needs(svg);
    app.add_flag("--png", o.png, "also a PNG of each picture (through rsvg-convert, of librsvg2-bin)")
        ->needs(svg);
    app.add_flag("--json", o.json, "print one JSON document instead of the table");
    app.add_flag("--csv", o.csv,
                 "print CSV instead of the table: a header row with the units, then a row per section");
    app.add_flag("-r,--recursive", o.recursive,
                 "read the folders named among the files with their subfolders");
    app.add_option("-j,--jobs", o.jobs, "files computed at once (default: one a core)");
    app.add_flag("-q,--quiet", o.quiet, "do not list what each drawing held that made no outline");
}

// The files named, a folder standing for every .dxf and .txt file inside it (and in its subfolders
// with `recursive`), sorted by path.
std::vector<std::string> ExpandFolders(const std::vector<std::string>& names, bool recursive) {
    namespace fs = std::filesystem;
    std::vector<std::string> files;
    for (const std::string& name : names) {
        std::error_code error;
        if (!fs::is_directory(name, error)) {
            files.push_back(name);
            continue;
        }
        std::vector<std::string> inside;
        auto take = [&](const fs::directory_entry& entry) {
            const std::string extension = Lower(entry.path().extension().string());
            if ((extension == ".dxf" || extension == ".txt") && entry.is_regular_file(error))
                inside.push_back(entry.path().string());
        };
        if (recursive) {
            for (const auto& entry :
                 fs::recursive_directory_iterator(name, fs::directory_options::skip_permission_denied, error))
                take(entry);
        } else {
            for (const auto& entry : fs::directory_iterator(name, error)) take(entry);
        }
        std::sort(inside.begin(), inside.end());
        files.insert(files.end(), inside.begin(), inside.end());
    }
    return files;
}

// One file's report as its worker makes it, taken by the printer a piece at a time.
struct FileReport {
    std::deque<std::vector<ProfileOutcome>> batches;  // sections not yet printed
    std::string failure, skips;          // the file could not be read; what it held that made no outline
    std::size_t outlines = 0, done = 0;  // outlines read, and sections (or rejections) reported so far
    bool finished = false;
};

// Files computed on several threads and printed in the order they were named, each section as soon
// as the files before it are printed (a large file is not held whole).
class SectionRun {
  public:
    // Sections go to the printer in batches (handing over each one would cost more in waking
    // threads than computing it), and a file holds at most so many batches that wait: a worker
    // that is ahead of the printer waits for it rather than filling the memory.
    static constexpr std::size_t kBatch = 256, kMostWaiting = 64;

    SectionRun(const Options& o, const ReportUnits& units, std::vector<std::string> files)
        : o_(o),
          units_(units),
          kind_(o.csv    ? ReportKind::Csv
                : o.json ? ReportKind::Json
                         : ReportKind::Table),
          files_(std::move(files)),
          reports_(files_.size()) {
        for (const std::string& file : files_) {
            std::error_code error;
            const auto size = std::filesystem::file_size(file, error);
            sizes_.push_back(error ? 0 : static_cast<double>(size));
            totalSize_ += sizes_.back();
        }
    }

    int Run(std::ostream& out, std::ostream& err, double progressAfterSeconds) {
        const unsigned cores = std::max(1u, std::thread::hardware_concurrency());
        const std::size_t workers = std::min<std::size_t>(o_.jobs ? o_.jobs : cores, files_.size());
        std::vector<std::thread> threads;
        for (std::size_t w = 0; w < workers; ++w) threads.emplace_back([this] { Work(); });
        const int status = Print(out, err, progressAfterSeconds);
        for (std::thread& t : threads) t.join();
        return status;
    }

  private:
    void Work() {
        for (std::size_t i = next_++; i < files_.size(); i = next_++) Compute(i);
    }

    void Compute(std::size_t i) {
        const std::string& file = files_[i];
        try {
            DxfSkips skipped;
            std::vector<DrawnProfile> skippedShapes;
            const std::vector<DrawnProfile> profiles =
                ReadOutlines(file, o_.read, &skipped, o_.svgAll ? &skippedShapes : nullptr);
            std::vector<DrawnSection> drawn;  // for the file's overview
            Update(i, [&](FileReport& r) { r.outlines = profiles.size(); });
            std::vector<ProfileOutcome> batch;
            const auto handOver = [&] {
                std::unique_lock lock(mutex_);
                room_.wait(lock, [&] { return reports_[i].batches.size() < kMostWaiting; });
                reports_[i].done += batch.size();
                reports_[i].batches.push_back(std::move(batch));
                lock.unlock();
                ready_.notify_one();
                batch.clear();
            };
            std::size_t ordinal = 0;
            AnalyseProfiles(
                profiles, units_.setting, o_.eachLoop, &skipped,
                [&](ProfileOutcome&& outcome) {
                    if (o_.svgAll)
                        drawn.push_back({outcome.outlines, outcome.isHole, outcome.values.has_value(),
                                         outcome.name, outcome.error});
                    outcome.name = file + ": " + outcome.name;
                    outcome.file = file;
                    if (!o_.svg.empty()) Draw(i, ++ordinal, outcome, profiles);
                    batch.push_back(std::move(outcome));
                    if (batch.size() >= kBatch) handOver();
                },
                drawings::TorsionRequest{o_.torsion, o_.poisson});
            if (!batch.empty()) handOver();
            if (o_.svgAll)
                Write(PictureFolder() / OverviewName(file),
                      DrawingSvg(file, drawn, profiles, skippedShapes, SkipSummary(skipped), units_));
            if (!o_.quiet && !skipped.empty())
                Update(i, [&](FileReport& r) { r.skips = SkipSummary(skipped); });
        } catch (const DrawingFileError& e) {
            Update(i, [&](FileReport& r) { r.failure = e.what(); });
        }
        Update(i, [](FileReport& r) { r.finished = true; });
    }

    // A section's picture, written while its outlines are at hand. A picture's file takes the first
    // section of the first file; the others are counted and said at the end.
    void Draw(std::size_t file, std::size_t ordinal, const ProfileOutcome& outcome,
              const std::vector<DrawnProfile>& profiles) {
        std::filesystem::path path(o_.svg);
        if (PictureIsOneFile(o_.svg)) {
            if (file != 0 || ordinal != 1) {
                ++undrawn_;
                return;
            }
        } else {
            path /= PictureName(files_[file], outcome, ordinal);
        }
        Write(path, SectionSvg(outcome, profiles, units_));
    }

    // Where overviews go: the pictures' folder, or the folder of the one picture's file.
    std::filesystem::path PictureFolder() const {
        const std::filesystem::path path(o_.svg);
        return PictureIsOneFile(o_.svg) ? path.parent_path() : path;
    }

    // A picture, and its PNG when asked for; a failure is said at the end.
    void Write(const std::filesystem::path& path, const std::string& svg) {
        std::ofstream picture(path, std::ios::binary);
        picture << svg;
        picture.close();
        std::string failure;
        if (!picture)
            failure = "cannot write " + path.string();
        else if (o_.png && !Converted(path))
            failure = "rsvg-convert could not make a PNG of " + path.string();
        if (failure.empty()) return;
        const std::lock_guard lock(mutex_);
        pictureFailures_.push_back(failure);
    }

    template <class Change>
    void Update(std::size_t i, Change change) {
        {
            const std::lock_guard lock(mutex_);
            change(reports_[i]);
        }
        ready_.notify_one();
    }

    int Print(std::ostream& out, std::ostream& err, double progressAfterSeconds) {
        const auto start = std::chrono::steady_clock::now();
        bool unreadable = false, any = false, progressShown = false;
        std::vector<std::string> rejected;
        for (std::size_t i = 0; i < files_.size();) {
            std::deque<std::vector<ProfileOutcome>> batches;
            bool finished = false;
            FileReport report;
            {
                std::unique_lock lock(mutex_);
                ready_.wait_for(lock, std::chrono::milliseconds(200),
                                [&] { return !reports_[i].batches.empty() || reports_[i].finished; });
                batches.swap(reports_[i].batches);
                finished = reports_[i].finished;
                if (finished) report = std::move(reports_[i]);
            }
            room_.notify_all();
            if (progressShown && (!batches.empty() || finished)) err << "\r\033[K" << std::flush;
            // The sections are formatted here, on the printer's thread, while the workers compute.
            for (const std::vector<ProfileOutcome>& batch : batches) {
                for (const ProfileOutcome& outcome : batch) {
                    if (!any) out << ReportStart(kind_, units_);
                    out << ReportEntry(kind_, outcome, units_, !any);
                    if (!outcome.values) rejected.push_back(outcome.name + " " + outcome.error);
                    any = true;
                }
            }
            const double elapsed =
                std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
            progressShown = progressAfterSeconds >= 0 && elapsed >= progressAfterSeconds && !finished;
            if (progressShown) err << "\r" << ProgressLine(i, elapsed) << "\033[K" << std::flush;
            if (!finished) continue;
            outlinesBefore_ += report.done;
            if (!report.failure.empty()) err << "tgp-section: " << report.failure << "\n";
            unreadable = unreadable || !report.failure.empty();
            if (!report.skips.empty())
                err << "tgp-section: " << files_[i] << ": skipped " << report.skips << "\n";
            ++i;
        }
        if (!any) {
            if (!unreadable) err << "tgp-section: no profiles found\n";
            return 1;
        }
        out << ReportEnd(kind_) << std::flush;
        for (const std::string& line : rejected) err << "tgp-section: " << line << "\n";
        for (const std::string& line : pictureFailures_) err << "tgp-section: " << line << "\n";
        if (undrawn_ > 0)
            err << "tgp-section: " << o_.svg << " holds the first section; " << undrawn_
                << " more not drawn (give a folder for a picture of each)\n";
        return unreadable || !pictureFailures_.empty() ? 1 : rejected.empty() ? 0 : 2;
    }

    // "tgp-section: 3 of 10 files, 12345 outlines, 4560 outlines/s, about 2 s left": the share done
    // is counted in bytes of the files, a file being read counting by its outlines reported.
    std::string ProgressLine(std::size_t printing, double elapsed) {
        std::size_t filesDone = printing, outlines = outlinesBefore_;
        double bytesDone = 0;
        {
            const std::lock_guard lock(mutex_);
            for (std::size_t i = printing; i < reports_.size(); ++i) {
                const FileReport& r = reports_[i];
                filesDone += r.finished && i > printing;
                outlines += r.done;
                bytesDone += r.finished ? sizes_[i]
                             : r.outlines
                                 ? sizes_[i] * static_cast<double>(r.done) / static_cast<double>(r.outlines)
                                 : 0;
            }
        }
        for (std::size_t i = 0; i < printing; ++i) bytesDone += sizes_[i];
        const double share = totalSize_ > 0 ? bytesDone / totalSize_ : 0;
        std::string line =
            fmt::format("tgp-section: {} of {} files, {} outlines, {:.0f} outlines/s", filesDone,
                        files_.size(), outlines, static_cast<double>(outlines) / std::max(elapsed, 1e-9));
        if (share > 0.01) line += fmt::format(", about {:.0f} s left", elapsed * (1 - share) / share);
        return line;
    }

    const Options& o_;
    const ReportUnits& units_;
    const ReportKind kind_;
    const std::vector<std::string> files_;
    std::vector<double> sizes_;
    double totalSize_ = 0;
    std::size_t outlinesBefore_ = 0;  // reported by the files printed
    std::atomic<std::size_t> next_{0};
    std::mutex mutex_;
    std::condition_variable ready_, room_;
    std::vector<FileReport> reports_;
    std::atomic<std::size_t> undrawn_{0};
    std::vector<std::string> pictureFailures_;
};

}  // namespace

int RunSectionCommand(int argc, const char* const* argv, std::ostream& out, std::ostream& err,
                      double progressAfterSeconds) {
    CLI::App app{"Section properties of closed profiles drawn as polylines, circles or vertex lists",
                 "tgp-section"};
    Options o;
    Declare(app, o);
    ReportUnits units;
    try {
        app.parse(argc, argv);
        units = ReportUnits::From(SettingFor(LengthUnitNamed(o.length, "--units"), AngleUnitNamed(o.angle)),
                                  o.digits);
        units.torsion = o.torsion;
        if (!o.drawingUnits.empty()) o.read.millimetresPerUnit = MillimetresPerLengthUnit(o.drawingUnits);
        if (!o.layer.empty()) o.read.layer = o.layer;
        if (!o.layout.empty()) o.read.layout = o.layout;
        o.read.format = o.format == "dxf"    ? DrawingFormat::Dxf
                        : o.format == "text" ? DrawingFormat::Text
                                             : DrawingFormat::ByExtension;
        if (o.json && o.csv) throw CLI::ValidationError("--csv", "choose one of --json and --csv");
        if (!o.svg.empty() && !PictureIsOneFile(o.svg)) {
            std::error_code error;
            std::filesystem::create_directories(o.svg, error);
            if (error)
                throw CLI::ValidationError("--svg",
                                           "cannot make the folder " + o.svg + ": " + error.message());
        }
        if (o.png && std::system("rsvg-convert --version > /dev/null 2>&1") != 0)
            throw CLI::ValidationError("--png",
                                       "needs rsvg-convert (Debian's librsvg2-bin), which is not installed");
    } catch (const CLI::ParseError& e) {
        return app.exit(e, out, err) == 0 ? 0 : 1;
    }
    // A file that cannot be read is reported and the others are still computed.
    return SectionRun(o, units, ExpandFolders(o.files, o.recursive))
        .Run(out, err, o.quiet ? -1 : progressAfterSeconds);
}

}  // namespace tgp::cli
