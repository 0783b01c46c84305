// What a run writes to can't be written.

#include "FaultTable.h"

#include <fcntl.h>
#include <sys/stat.h>

namespace {

namespace fs = std::filesystem;

/// An output of a run, and the option that names it.
struct Output {
  const char* name;
  const char* option;
};
constexpr Output kOutputs[] = {{"residuals", "-fp"},
                               {"delays by interval", "-gpi"},
                               {"delays by epoch", "-gpe"},
                               {"biases", "-gpd"}};

const std::string kLost = "STANDARD OUTPUT CAN NOT BE WRITTEN!";

class OutputFaults : public ProgramTest {
protected:
  /// A run that writes everything; \p more names the files.
  Outcome Run(
      const Arguments& more, std::function<void()> prepare = [] {}) const {
    Start start;
    start.folder = folder.Path().string();
    start.prepare = std::move(prepare);
    return RunFaulty(start, With(Precise({"-xREC,IONEPH", "-ii00:10:00", "-lCODE,PHASE"}), more));
  }
  /// The run went on to its end and named the file.
  void ExpectWarning(const std::string& kind, const std::string& fault, const std::string& file,
                     const Outcome& o) {
    SCOPED_TRACE(kind + ": " + fault);
    ExpectGoodEnd(o);
    EXPECT_EQ(o.status, 0);
    EXPECT_NE(
        o.err.find("\n#### Zenta: Warning -> OUTPUT FILE CAN NOT BE WRITTEN: " + file + "! ####\n"),
        std::string::npos)
        << o;
    FaultTable(kind).Add(fault, o);
  }
  void ExpectLostReports(const std::string& fault, const Outcome& o) {
    SCOPED_TRACE(fault);
    ExpectGoodEnd(o);
    EXPECT_EQ(o.status, 0);
    EXPECT_EQ(o.err, "\n#### Zenta: Warning -> " + kLost + " ####\n     Continuing Zenta ... \n\n");
    FaultTable("standard output").Add(fault, o);
  }
  /// Files that a run was still writing to.
  long Unfinished() const {
    return std::count_if(fs::directory_iterator(folder.Path()), {},
                         [](const auto& entry) { return entry.path().extension() == ".part"; });
  }
};

void ForgetStandardOutput() { dup2(open("/dev/null", O_WRONLY), STDOUT_FILENO); }

void LimitFiles() {
  const rlimit bytes = {128, 128}; // enough for the arcs and for one message
  setrlimit(RLIMIT_FSIZE, &bytes);
}

void BreakPipe() {
  int ends[2] = {};
  if (pipe(ends) != 0) _exit(125);
  close(ends[0]);
  dup2(ends[1], STDOUT_FILENO);
}

// ---- Files ---------------------------------------------------------------------------------

TEST_F(OutputFaults, Files) {
  fs::create_directory(folder.Name("directory"));
  for (const Output& output : kOutputs) {
    const std::string option = output.option;
    ExpectWarning(output.name, "full device", "/dev/full", Run({option + "/dev/full"}));
    ExpectWarning(output.name, "missing folder", "no/out", Run({option + "no/out"}));
    ExpectWarning(output.name, "directory", "directory", Run({option + "directory"}));
    ExpectWarning(output.name, "no name", "", Run({option}));
    ExpectWarning(output.name, "limit of file sizes", "out", Run({option + "out"}, [] {
                    ForgetStandardOutput();
                    LimitFiles();
                  }));
    EXPECT_FALSE(Exists("out"));
  }
  EXPECT_EQ(Unfinished(), 0);
}

TEST_F(OutputFaults, FilesInAProtectedFolder) {
  if (geteuid() == 0) GTEST_SKIP() << "nothing is protected from root";
  fs::create_directory(folder.Name("protected"));
  fs::permissions(folder.Name("protected"), fs::perms::owner_read | fs::perms::owner_exec);
  for (const Output& output : kOutputs)
    ExpectWarning(output.name, "read-only folder", "protected/out",
                  Run({output.option + std::string("protected/out")}));
}

TEST_F(OutputFaults, Arcs) {
  fs::create_symlink("/dev/full", folder.Name("Ambiq.b"));
  ExpectWarning("arcs", "full device", "Ambiq.b", Run({}));
  fs::remove(folder.Name("Ambiq.b"));
  fs::create_directory(folder.Name("Ambiq.b"));
  ExpectWarning("arcs", "directory", "Ambiq.b", Run({}));
}

TEST_F(OutputFaults, ResultsDoNotHangOnTheFileOfTheArcs) {
  const Outcome sound = Run({});
  fs::remove(folder.Name("Ambiq.b"));
  fs::create_directory(folder.Name("Ambiq.b"));
  EXPECT_EQ(WithoutDate(Run({}).out), WithoutDate(sound.out));
}

TEST_F(OutputFaults, DevicesAndPipesAreWritten) {
  const std::string pipe = folder.Name("pipe");
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  const int reader = open(pipe.c_str(), O_RDONLY | O_NONBLOCK);
  const Outcome o = Run({"-fp/dev/null", "-gpi/dev/stdout", "-gpdpipe"});
  EXPECT_EQ(o.status, 0) << o;
  EXPECT_EQ(o.err, "");
  EXPECT_NE(o.out.find("#ION_TYPE: LINEAR"), std::string::npos);
  char text[4096];
  EXPECT_GT(read(reader, text, sizeof text), 0);
  close(reader);
}

// ---- Standard streams ----------------------------------------------------------------------

TEST_F(OutputFaults, StandardOutput) {
  ExpectLostReports("full device",
                    Run({}, [] { dup2(open("/dev/full", O_WRONLY), STDOUT_FILENO); }));
  ExpectLostReports("closed", Run({}, [] { close(STDOUT_FILENO); }));
  ExpectLostReports("broken pipe", Run({}, BreakPipe));
}

TEST_F(OutputFaults, StandardOutputBeyondTheLimitOfFileSizes) {
  const Outcome o = Run({}, LimitFiles);
  ExpectGoodEnd(o);
  EXPECT_EQ(o.status, 0);
  EXPECT_NE(o.err.find(kLost), std::string::npos) << o;
  FaultTable("standard output").Add("limit of file sizes", o);
}

TEST_F(OutputFaults, FilesAreWholeWithoutStandardStreams) {
  const Outcome sound = Run({"-fpres", "-gpiion", "-gpdbias"});
  ASSERT_EQ(sound.status, 0);
  const std::vector<std::string> names = {"res", "ion", "bias", "Ambiq.b"};
  std::vector<std::string> texts;
  for (const std::string& name : names) {
    texts.push_back(File(name));
    fs::remove(folder.Name(name));
  }
  const Outcome o = Run({"-fpres", "-gpiion", "-gpdbias"}, [] {
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) close(stream);
  });
  EXPECT_EQ(o.status, 0);
  EXPECT_EQ(o.signal, 0);
  for (std::size_t k = 0; k < names.size(); ++k) EXPECT_EQ(File(names[k]), texts[k]) << names[k];
}

// The report of a reader goes to standard output: its loss must not leave the error silent.
TEST_F(OutputFaults, ErrorOnALostStandardOutputIsNotSilent) {
  folder.Write("obs", "");
  const Outcome o = Run({}, [] { close(STDOUT_FILENO); });
  EXPECT_EQ(o.status, 1);
  EXPECT_NE(o.err.find(kLost), std::string::npos) << o;
  FaultTable("standard output").Add("closed, no observations", o);
}

TEST_F(OutputFaults, StandardErrorMayBeClosed) {
  const Outcome o = Run({"-v"}, [] { close(STDERR_FILENO); });
  ExpectGoodEnd(o);
  EXPECT_EQ(o.status, 0);
  EXPECT_EQ(From(o.out, "ESTIMATION OF"), From(Run({}).out, "ESTIMATION OF"));
}

} // namespace
