#include "CommandLine.h"

#include "Page.h"
#include "Pictures.h"
#include "command/Command.h"
#include "report/Input.h"
#include "report/ReadReport.h"
#include "report/Refusal.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fmt/format.h>

namespace view {

namespace {

namespace fs = std::filesystem;
using report::Refusal;

struct Options {
  std::string folder = ".";
  std::string output, report, residuals, inputs, svg, png;
  std::string theme = "light";
  bool noInputs = false;
};

void AddOptions(CLI::App& app, Options& o) {
  app.add_option("folder", o.folder, "Folder with the report and the other outputs of a run")
      ->option_text("DIR=.");
  app.add_option("-o,--output", o.output,
                 "Page to write; zenta-view.html in the folder unless given")
      ->option_text("FILE");
  app.add_option("--report", o.report,
                 "Report, where it is not the only one in the folder; - is standard input")
      ->option_text("FILE");
  app.add_option("--residuals", o.residuals,
                 "Residual file, where it is not the one that the report names")
      ->option_text("FILE");
  app.add_option("--inputs", o.inputs,
                 "Folder of the run's input files, for elevations and eclipses; otherwise they are "
                 "looked for where the report says and in the folder")
      ->option_text("DIR");
  app.add_flag("--no-inputs", o.noInputs, "Do without elevations and eclipses");
  app.add_option("--svg", o.svg, "Write the pictures as SVG files into this folder too")
      ->option_text("DIR");
  app.add_option("--png", o.png, "Write the pictures as PNG files into this folder too")
      ->option_text("DIR");
  app.add_option("--theme", o.theme, "Colours of these files: light or dark; the page has both")
      ->option_text("THEME=light")
      ->check(CLI::IsMember({"light", "dark"}));
}

/// The only report in \p folder.
std::string FindReport(const std::string& folder) {
  std::error_code error;
  const fs::directory_iterator files(folder, error);
  if (error == std::errc::not_a_directory)
    throw Refusal(fmt::format("{0}: is no folder; for a single file: --report {0}", folder));
  if (error) throw Refusal(fmt::format("{}: can't be opened: {}", folder, error.message()));
  std::vector<std::string> found;
  for (const fs::directory_entry& entry : files) {
    std::error_code ignored;
    if (!entry.is_regular_file(ignored)) continue;
    constexpr std::size_t kHead = 1 << 16; // bytes that tell a report, with its warnings before it
    if (report::LooksLikeReport(report::ReadStart(entry.path().string(), kHead)))
      found.push_back(entry.path().string());
  }
  std::sort(found.begin(), found.end());
  if (found.empty())
    throw Refusal(fmt::format("{}: no report of zenta lies there; a run writes it to standard "
                              "output: zenta ... > {}",
                              folder, (fs::path(folder) / "report.txt").string()));
  if (found.size() > 1)
    throw Refusal(fmt::format("{}: several reports lie there, {} and {}; name one with --report",
                              folder, found[0], found[1]));
  return found[0];
}

void ReadResiduals(const Options& o, const inputs::Places& places, ViewData& data) {
  const std::optional<report::ResidualNote>& note = data.report.residuals;
  if (!note && !o.residuals.empty())
    throw Refusal(fmt::format("{}: expected the section \"PRINTING OF RESIDUALS:\", found the end; "
                              "the run wrote no residual file, or the report is cut",
                              data.reportName));
  if (!note) {
    data.whyNoResiduals = "Without residuals: the run wrote no residual file (zenta -fpFILE).";
    return;
  }
  const std::string name = o.residuals.empty() ? inputs::Find(note->file, places) : o.residuals;
  if (name.empty()) {
    data.whyNoResiduals =
        fmt::format("Without residuals: {} is not there; see --residuals.", note->file);
    return;
  }
  data.residuals = report::ReadResidualFile(name, report::ReadInput(name));
  if (data.residuals->Count() != note->count)
    throw Refusal(
        fmt::format("{}: expected {} residuals, as the report says, found {}; the file is "
                    "cut or of another run",
                    name, note->count, data.residuals->Count()));
}

ViewData ReadAll(const Options& o) {
  ViewData data;
  const std::string name = o.report.empty() ? FindReport(o.folder) : o.report;
  data.reportName = report::InputName(name);
  data.report = report::ReadReport(data.reportName, report::ReadInput(name));
  const std::string beside =
      o.report.empty() || name == "-" ? o.folder : fs::path(name).parent_path().string();
  ReadResiduals(o, {beside, ""}, data);
  if (o.noInputs) {
    data.whyNoInputs = "Without elevations and times of eclipses, as asked for.";
    return data;
  }
  std::string whyNot;
  data.inputs = inputs::ReadInputs(data.report, {beside, o.inputs}, whyNot);
  if (!data.inputs)
    data.whyNoInputs = fmt::format("Without elevations and times of eclipses, which need the input "
                                   "files of the run: {}; see --inputs.",
                                   whyNot);
  return data;
}

std::vector<Picture> PicturesOf(const ViewData& data) {
  const std::vector<LocatedResidual> located = Locate(data);
  std::vector<Picture> pictures;
  for (std::optional<Picture>& p :
       std::vector{DelayPicture(data), RatePicture(data), GradientPicture(data), BiasPicture(data),
                   ResidualTimePicture(data), ResidualElevationPicture(data, located),
                   SkyPicture(report::Observable::P1C1, located),
                   SkyPicture(report::Observable::P2C1, located),
                   SkyPicture(report::Observable::L4, located), ArcPicture(data)})
    if (p) pictures.push_back(std::move(*p));
  return pictures;
}

void WritePictures(const std::vector<Picture>& pictures, const std::string& folder,
                   const char* ending, std::string (*draw)(const Picture&, Theme), Theme theme) {
  if (folder.empty()) return;
  std::error_code error;
  fs::create_directories(folder, error);
  if (error) throw Refusal(fmt::format("{}: can't be made: {}", folder, error.message()));
  for (const Picture& p : pictures)
    report::WriteOutput((fs::path(folder) / (p.name + ending)).string(), draw(p, theme));
}

void View(const Options& o) {
  const ViewData data = ReadAll(o);
  const std::vector<Picture> pictures = PicturesOf(data);
  std::vector<DrawnPicture> drawn;
  drawn.reserve(pictures.size());
  for (const Picture& p : pictures) drawn.push_back({p, DrawForPage(p)});
  const std::string page = PageOf(data, drawn);
  const std::string name =
      o.output.empty() ? (fs::path(o.folder) / "zenta-view.html").string() : o.output;
  report::WriteOutput(name, page);
  const Theme theme = o.theme == "dark" ? Theme::dark : Theme::light;
  WritePictures(pictures, o.svg, ".svg", DrawSvg, theme);
  WritePictures(pictures, o.png, ".png", DrawPng, theme);
  if (name != "-") std::printf("%s\n", name.c_str());
}

} // namespace

int RunCommand(int argc, const char* const* argv) {
  CLI::App app("Draws the results of a run of zenta on one page that needs no network.",
               "zenta-view");
  app.footer("Exit status: 0 done, 1 an input is refused, 2 wrong usage.");
  Options options;
  AddOptions(app, options);
  return command::Run(app, argc, argv, [&options] { View(options); });
}

} // namespace view
