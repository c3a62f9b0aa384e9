// Runs the built mxutil command, found next to this test program.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

struct Result {
  int status = -1;
  std::string out;
  std::string err;
};

std::string Quote(const std::string& arg) {
  std::string quoted = "'";
  for (char c : arg) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return quoted + "'";
}

fs::path Tool() { return fs::read_symlink("/proc/self/exe").parent_path() / "mxutil"; }

Result RunTool(const std::vector<std::string>& args) {
  Result result;
  const fs::path errFile = fs::temp_directory_path() / ("mxutil_err_" + std::to_string(::getpid()));
  std::string command = "MX_LOCALE=pt-BR " + Quote(Tool().string());
  for (const std::string& arg : args) command += " " + Quote(arg);
  command += " 2>" + Quote(errFile.string());
  FILE* pipe = ::popen(command.c_str(), "r");
  if (pipe == nullptr) return result;
  std::array<char, 4096> buffer{};
  size_t n;
  while ((n = std::fread(buffer.data(), 1, buffer.size(), pipe)) > 0) result.out.append(buffer.data(), n);
  const int raw = ::pclose(pipe);
  result.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
  std::ifstream err(errFile);
  std::stringstream text;
  text << err.rdbuf();
  result.err = text.str();
  fs::remove(errFile);
  return result;
}

class MxutilCommand : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(fs::exists(Tool())) << "build the mxutil target: " << Tool(); }

  static void ExpectOutput(const std::vector<std::string>& args, const std::string& line) {
    const Result r = RunTool(args);
    EXPECT_EQ(r.status, 0) << args[0] << ": " << r.err;
    EXPECT_EQ(r.out, line + "\n") << args[0];
    EXPECT_EQ(r.err, "") << args[0];
  }

  static void ExpectRefused(const std::vector<std::string>& args, const std::string& inMessage) {
    const Result r = RunTool(args);
    EXPECT_EQ(r.status, 2) << (args.empty() ? "" : args[0]);
    EXPECT_EQ(r.out, "");
    EXPECT_NE(r.err.find(inMessage), std::string::npos) << r.err;
  }
};

TEST_F(MxutilCommand, PrintsStringsBooleansAndNumbers) {
  ExpectOutput({"CurrencyAsStr", "101"}, "cento e um reais");
  ExpectOutput({"CurrencyAsStr", "1.5", "dólar", "dólares"}, "um dólar e cinquenta centavos");
  ExpectOutput({"IsValidCPFOrCNPJ", "529.982.247-25"}, "True");
  ExpectOutput({"IsValidEmail", "ana@exemplo"}, "False");
  ExpectOutput({"LongToHex", "255"}, "000000FF");
  ExpectOutput({"ShiftRGBColor", "1056816", "16"}, "2109504");
  ExpectOutput({"LenTrim", "  olá  "}, "3");
  ExpectOutput({"FormatWithZeros", "12", "5"}, "00012");
  ExpectOutput({"MilimeterToInche", "10"}, "0.3937");
  ExpectOutput({"FormatFileSize", "1048576"}, "1,00 Mb");  // the regional form is the member's own
  ExpectOutput({"FormatAsDate", "31.12.2023", "1"}, "31/12/2023");
  ExpectOutput({"FormatAsDateEx", "1-2-2024"}, "01/02/2024");
  ExpectOutput({"IsValidDate", "29/02/1900", "1"}, "False");
  ExpectOutput({"IsValidTime", "235959", ""}, "True");
  ExpectOutput({"NumberOfDaysOnMonth", "2", "2024"}, "29");
  ExpectOutput({"NameOfTheDay", "2024-01-13", "True"}, "Sáb");
  ExpectOutput({"RemoveAccents", "ação ñ"}, "acao ñ");
  ExpectOutput({"JoinCollection", "--delimiter=;", "a", "b"}, "a;b");
  ExpectOutput({"FixNullField", "--null"}, "");
}

TEST_F(MxutilCommand, ReadsFiles) {
  const fs::path file = fs::temp_directory_path() / ("mxutil_file_" + std::to_string(::getpid()));
  std::ofstream(file, std::ios::binary) << "\xFF\xFE" << std::string("o\0k\0", 4);
  ExpectOutput({"LoadStringFromFile", file.string()}, "ok");
  // Read as ANSI the mark and the zero bytes are characters of their own.
  ExpectOutput({"LoadStringFromFile", file.string(), "1"}, std::string("ÿþo\0k\0", 8));
  fs::remove(file);
}

TEST_F(MxutilCommand, RefusesUnknownMembersAndBadArguments) {
  ExpectRefused({}, "usage");
  ExpectRefused({"NoSuchMember"}, "unknown member");
  ExpectRefused({"LenTrim"}, "takes 1 argument");
  ExpectRefused({"LenTrim", "a", "b"}, "takes 1 argument");
  ExpectRefused({"GetStringContent", "a", "b"}, "takes 3 argument");
  ExpectRefused({"CurrencyAsStr", "1,5"}, "not a number");
  ExpectRefused({"FormatWithZeros", "1", "40000"}, "not an Integer");
  ExpectRefused({"NameOfTheDay", "2024-02-30"}, "not a date");
  ExpectRefused({"NameOfTheDay", "2024-02-03", "maybe"}, "True or False");
  ExpectRefused({"IsArrayHasBeenInitialized", "x"}, "array");
  const Result help = RunTool({"--help"});
  EXPECT_EQ(help.status, 0);
  EXPECT_NE(help.out.find("CurrencyAsStr"), std::string::npos);
  EXPECT_NE(help.out.find("JoinCollection"), std::string::npos);
}

}  // namespace
