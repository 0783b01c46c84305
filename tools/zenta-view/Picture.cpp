#include "Picture.h"

#include "Html.h"
#include "report/Input.h"
#include "report/Refusal.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fmt/format.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace view {

namespace {

namespace fs = std::filesystem;
using report::Refusal;

/// A folder of its own, removed at the end.
class WorkFolder {
public:
  WorkFolder() {
    std::string name = (fs::temp_directory_path() / "zenta-view-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr)
      throw Refusal(fmt::format("{}: can't be made: {}", name, std::strerror(errno)));
    path_ = name;
  }
  ~WorkFolder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
  }
  WorkFolder(const WorkFolder&) = delete;
  WorkFolder& operator=(const WorkFolder&) = delete;
  std::string Name(const char* file) const { return (path_ / file).string(); }

private:
  fs::path path_;
};

/// In single quotes, as gnuplot reads them.
std::string Quoted(const std::string& text) {
  std::string out = "'";
  for (const char c : text) out += c == '\'' ? "''" : std::string(1, c);
  return out + "'";
}

/// \returns the exit status of "gnuplot -d \p script", which leaves personal settings alone;
/// what it says goes to file \p messages.
int RunGnuplot(const std::string& script, const std::string& messages) {
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_addopen(&actions, 1, messages.c_str(), O_WRONLY | O_CREAT | O_APPEND,
                                   0600);
  posix_spawn_file_actions_adddup2(&actions, 1, 2);
  std::string program = "gnuplot";
  std::string option = "-d";
  std::string file = script;
  char* argv[] = {program.data(), option.data(), file.data(), nullptr};
  pid_t child = 0;
  const int error = posix_spawnp(&child, program.c_str(), &actions, nullptr, argv, environ);
  posix_spawn_file_actions_destroy(&actions);
  if (error != 0)
    throw Refusal(fmt::format("gnuplot can't be run: {}; install it (Debian: gnuplot-nox)",
                              std::strerror(error)));
  int status = 0;
  while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128;
}

enum class Format { svg, png };

/// Lines with round ends: the points of Dots are lines without a length.
std::string Terminal(const Picture& p, Format format) {
  if (format == Format::svg)
    return fmt::format("set terminal svg size {},{} dynamic rounded name \"{}\" background "
                       "\"@paper@\" font \"sans-serif,13\"\n",
                       p.width, p.height, p.name);
  return fmt::format("set terminal pngcairo size {},{} rounded background \"@paper@\" font "
                     "\"sans-serif,10\"\n",
                     p.width, p.height);
}

/// What gnuplot makes of \p script.
std::string Draw(const std::string& name, const std::string& script) {
  const WorkFolder folder;
  const std::string picture = folder.Name("picture");
  const std::string commands = folder.Name("script.gp");
  const std::string messages = folder.Name("messages");
  report::WriteOutput(commands,
                      "set output " + Quoted(picture) + "\n" + script + "\nunset output\n");
  const int status = RunGnuplot(commands, messages);
  std::error_code missing;
  if (status != 0 || fs::file_size(picture, missing) == 0 || missing)
    throw Refusal(fmt::format("gnuplot failed on the picture {} (status {}): {}", name, status,
                              report::ReadInput(messages)));
  return report::ReadInput(picture);
}

/// Takes out every part from \p start to \p end.
std::string Without(std::string text, std::string_view start, std::string_view end) {
  for (std::size_t at = 0; (at = text.find(start, at)) != std::string::npos;) {
    const std::size_t stop = text.find(end, at);
    if (stop == std::string::npos) break;
    text.erase(at, stop + end.size() - at);
  }
  return text;
}

/// gnuplot opens and closes a group for every change of style, drawn with or not.
std::string WithoutEmptyGroups(const std::string& svg) {
  std::string out;
  std::string_view rest = svg;
  while (!rest.empty()) {
    const std::size_t end = std::min(rest.find('\n'), rest.size() - 1) + 1;
    const std::string_view line = rest.substr(0, end);
    rest.remove_prefix(end);
    constexpr std::string_view kClose = "</g>\n";
    if (line.starts_with("<g fill=\"none\"") && rest.starts_with(kClose))
      rest.remove_prefix(kClose.size());
    else
      out += line;
  }
  return out;
}

} // namespace

std::string DrawSvg(const Picture& p, Theme theme) {
  return Draw(p.name, Painted(Terminal(p, Format::svg) + p.script, theme));
}

std::string DrawPng(const Picture& p, Theme theme) {
  return Draw(p.name, Painted(Terminal(p, Format::png) + p.script, theme));
}

std::string DrawForPage(const Picture& p) {
  const std::string svg = Draw(p.name, PaintedForPage(Terminal(p, Format::svg) + p.script));
  std::string text = svg.substr(std::min(svg.find("<svg"), svg.size()));
  text = Without(std::move(text), "<title>", "</title>");
  text = Without(std::move(text), "<desc>", "</desc>");
  text = Without(std::move(text), "<filter", "</filter>");
  text = WithoutEmptyGroups(text);
  text = ReplacedAll(std::move(text), "id=\"gnuplot_canvas\"", "id=\"" + p.name + "\"");
  text = ReplacedAll(std::move(text), "'#gp", "'#" + p.name + "-");
  text = ReplacedAll(std::move(text), "id='gp", "id='" + p.name + "-");
  text = ReplacedAll(std::move(text), "xmlns=\"http://www.w3.org/2000/svg\"",
                     "role=\"img\" aria-label=\"" + Escaped(p.title) + "\"");
  text = ReplacedAll(std::move(text), " xmlns:xlink=\"http://www.w3.org/1999/xlink\"\n", "");
  text = ReplacedAll(std::move(text), "xlink:href", "href");
  return WithVariables(text);
}

} // namespace view
