// kelvor2d-build run as a user runs it: the same bytes for any number of jobs
// and through shards and merge (GNU Parallel included), clear errors that
// leave no output, --keep-going, layers with nothing to hatch, and the options.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>

namespace {

const std::string kProgram = KELVOR2D_BUILD_PATH;

struct Outcome {
  int status;
  std::string output;  // stdout and stderr
};

Outcome RunTool(const std::string& arguments) {
  Outcome outcome{-1, ""};
  FILE* pipe = popen((kProgram + " " + arguments + " 2>&1").c_str(), "r");
  char chunk[4096];
  size_t n;
  while ((n = std::fread(chunk, 1, sizeof chunk, pipe)) > 0)
    outcome.output.append(chunk, n);
  const int status = pclose(pipe);
  outcome.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  return outcome;
}

std::string ReadFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream out;
  out << in.rdbuf();
  return out.str();
}

class BuildTool : public ::testing::Test {
 protected:
  void SetUp() override {
    m_Dir = ::testing::TempDir() + "kelvor2d-build-" +
            ::testing::UnitTest::GetInstance()->current_test_info()->name() + "-" + std::to_string(getpid());
    std::system(("rm -rf '" + m_Dir + "' && mkdir -p '" + m_Dir + "'").c_str());
  }
  void TearDown() override { std::system(("rm -rf '" + m_Dir + "'").c_str()); }
  std::string Path(const std::string& name) const { return m_Dir + "/" + name; }
  // A sample build of `layers` layers.
  std::string Sample(int layers, const std::string& extra = "") {
    const std::string path = Path("sample.cli");
    EXPECT_EQ(RunTool("--quiet --sample " + path + " --sample-layers " + std::to_string(layers) + " " + extra)
                  .status,
              0);
    return path;
  }
  // Nothing but `kept` is left in the directory (no temporary files).
  void ExpectOnly(const std::string& kept) {
    FILE* pipe = popen(("ls '" + m_Dir + "'").c_str(), "r");
    char line[256];
    std::string names;
    while (std::fgets(line, sizeof line, pipe) != nullptr)
      names += line;
    pclose(pipe);
    EXPECT_EQ(names, kept);
  }
  std::string m_Dir;
};

TEST_F(BuildTool, OutputIsTheSameForEveryNumberOfJobs) {
  for (const char* encoding : {"", "--binary"}) {
    const std::string in = Sample(40, encoding);
    ASSERT_EQ(RunTool(in + " -o " + Path("one.cli") + " --jobs 1 " + encoding).status, 0);
    ASSERT_EQ(RunTool(in + " -o " + Path("three.cli") + " --jobs 3 " + encoding).status, 0);
    const std::string one = ReadFile(Path("one.cli"));
    EXPECT_GT(one.size(), 10000u);
    EXPECT_EQ(one, ReadFile(Path("three.cli"))) << encoding;
  }
}

TEST_F(BuildTool, ShardsMergedInAnyOrderGiveTheOneProcessBuild) {
  const std::string in = Sample(30);
  ASSERT_EQ(RunTool(in + " -o " + Path("whole.cli") + " --quiet").status, 0);
  for (const char* range : {"0-9", "10-19", "20-99"})
    ASSERT_EQ(RunTool(in + " -o " + Path(std::string("part-") + range + ".cli") + " --layers " + range +
                      " --jobs 2")
                  .status,
              0);
  const Outcome merged = RunTool("merge " + Path("part-20-99.cli") + " " + Path("part-0-9.cli") + " " +
                                 Path("part-10-19.cli") + " -o " + Path("merged.cli"));
  ASSERT_EQ(merged.status, 0) << merged.output;
  EXPECT_EQ(ReadFile(Path("whole.cli")), ReadFile(Path("merged.cli")));
  const Outcome twice =
      RunTool("merge " + Path("part-0-9.cli") + " " + Path("part-0-9.cli") + " -o " + Path("bad.cli"));
  EXPECT_NE(twice.status, 0);
  EXPECT_NE(twice.output.find("overlap"), std::string::npos) << twice.output;
}

TEST_F(BuildTool, GnuParallelRouteGivesTheOneProcessBuild) {
  if (std::system("command -v parallel > /dev/null 2>&1") != 0)
    GTEST_SKIP() << "GNU Parallel is not installed (Debian package 'parallel')";
  const std::string in = Sample(30);
  ASSERT_EQ(RunTool(in + " -o " + Path("whole.cli") + " --quiet").status, 0);
  const std::string command = "seq 0 8 29 | parallel --will-cite --halt now,fail=1 -j 2 " + kProgram + " " +
                              in + " -o " + Path("part-{}.cli") + " --layers {}-'{=$_+=7=}' --jobs 1 --quiet";
  ASSERT_EQ(std::system(("cd '" + m_Dir + "' && " + command).c_str()), 0);
  const Outcome merged = RunTool("merge " + Path("part-*.cli") + " -o " + Path("merged.cli"));
  ASSERT_EQ(merged.status, 0) << merged.output;
  EXPECT_EQ(ReadFile(Path("whole.cli")), ReadFile(Path("merged.cli")));
}

TEST_F(BuildTool, BadLayerStopsTheRunWithoutOutputOrIsLeftOutWithKeepGoing) {
  const std::string in = Path("bad.cli");  // layer 0 runs the wrong way round for its direction
  std::ofstream(in) << "$$HEADERSTART\n$$ASCII\n$$UNITS/0.001\n$$HEADEREND\n$$GEOMETRYSTART\n"
                    << "$$LAYER/30\n$$POLYLINE/1,1,5,0,0,0,9000,9000,9000,9000,0,0,0\n"
                    << "$$LAYER/60\n$$POLYLINE/1,1,5,0,0,0,9000,9000\n"
                    << "$$LAYER/90\n$$POLYLINE/1,2,2,0,0,5000,5000\n$$LAYER/120\n$$GEOMETRYEND\n";
  for (const char* jobs : {"1", "2"}) {
    const Outcome failed = RunTool(in + " -o " + Path("out.cli") + " --jobs " + jobs);
    EXPECT_EQ(failed.status, 1);
    EXPECT_NE(failed.output.find(in + ": line 9, layer 1: $$POLYLINE count 5 calls for 10 numbers, 5 follow"),
              std::string::npos)
        << failed.output;
    ExpectOnly("bad.cli\n");
  }
  const Outcome kept = RunTool(in + " -o " + Path("out.cli") + " --keep-going");
  EXPECT_EQ(kept.status, 0) << kept.output;
  // Layer 1 left out; layers 2 (an open line only) and 3 (empty) written without hatches.
  EXPECT_NE(kept.output.find("3 written, 1 left out (bad), 2 without hatches"), std::string::npos)
      << kept.output;
  const std::string out = ReadFile(Path("out.cli"));
  EXPECT_NE(out.find("$$LAYERS/3\n"), std::string::npos);
  EXPECT_NE(out.find("$$LAYER/90\n$$POLYLINE/4,2,2,0,0,5000,5000\n$$LAYER/120\n$$GEOMETRYEND"),
            std::string::npos)
      << out.substr(0, 400);
}

TEST_F(BuildTool, BadOptionsAreRefusedClearly) {
  const std::string in = Sample(2);
  const std::string out = " -o " + Path("out.cli");
  struct Case {
    std::string arguments, message;
  } cases[] = {
      {in + out + " --units-per-mm 1e-300", "bad value '1e-300' for --units-per-mm"},
      {in + out + " --hatch-distance 0.0001", "--hatch-distance 0.000100 mm rounds to 0 internal units"},
      {in + out + " --hatch-distance 9000 --units-per-mm 1e6", "does not fit 32-bit internal units"},
      {in + out + " --hatch-distance inf", "bad value 'inf' for --hatch-distance"},
      {in + out + " --contours 3 --contour-offset 0", "--contour-offset 0.000000 mm rounds to 0"},
      {in + out + " --jobs 0", "bad value '0' for --jobs"},
      {in + out + " --layers 5-2", "give FROM-TO"},
      {in + out + " --angle nan", "bad value 'nan' for --angle"},
      {in + out + " --frobnicate", "unknown option '--frobnicate'"},
      {in, "no output"},
      {Path("missing.cli") + out, "missing.cli: cannot open"}};
  for (const Case& c : cases) {
    const Outcome o = RunTool(c.arguments);
    EXPECT_NE(o.status, 0) << c.arguments;
    EXPECT_NE(o.output.find(c.message), std::string::npos) << c.arguments << "\n" << o.output;
  }
  const Outcome help = RunTool("--help");
  EXPECT_EQ(help.status, 0);
  for (const char* option : {"--contours", "--contour-offset", "--hatch-distance", "--angle", "--rotate",
                             "--binary", "--units-per-mm", "--jobs", "--layers", "--keep-going", "--preview",
                             "--preview-layers", "--preview-every", "--quiet", "--sample", "merge"})
    EXPECT_NE(help.output.find(option), std::string::npos) << option;
}

TEST_F(BuildTool, RecipeOptionsShapeTheOutput) {
  const std::string in = Sample(3);
  const Outcome run = RunTool(in + " -o " + Path("out.cli") + " --contours 3 --preview " + Path("pictures") +
                              " --preview-layers 1 --rotate 90");
  ASSERT_EQ(run.status, 0) << run.output;
  const std::string out = ReadFile(Path("out.cli"));
  for (const char* label : {"$$LABEL/1,contour 1\n", "$$LABEL/3,contour 3\n", "$$LABEL/4,hatch\n"})
    EXPECT_NE(out.find(label), std::string::npos) << label;
  EXPECT_NE(out.find("$$POLYLINE/3,1,"), std::string::npos);
  EXPECT_NE(out.find("$$HATCHES/4,"), std::string::npos);
  EXPECT_NE(run.output.find("3 written, 0 left out (bad), 0 without hatches"), std::string::npos)
      << run.output;
  ExpectOnly("out.cli\npictures\nsample.cli\n");
  EXPECT_EQ(ReadFile(Path("pictures/layer-00001.png")).substr(1, 3), "PNG");
  EXPECT_EQ(ReadFile(Path("pictures/build.png")).substr(1, 3), "PNG");
  EXPECT_TRUE(ReadFile(Path("pictures/layer-00000.png")).empty());
}

}  // namespace
