// SPDX-License-Identifier: MIT
// What vekctl makes of files that are not as it would have them.
#include <fstream>

#include "app/ProgramTests.hpp"
#include "platform/Files.hpp"
#include "support/WaveBytes.hpp"

namespace vek::test {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

/// A WAV file with 16,000 mono samples a second, each `bits` wide.
std::string waveFile(std::uint16_t encoding, std::uint16_t bits, std::string const& data) {
  return WaveBytes{.tag = encoding, .bits = bits, .data = data}.bytes();
}

/// Each sample as `convert` has it, in its first `size` bytes.
template <class Convert>
std::string converted(SpeechSample const& sample, std::size_t size, Convert convert) {
  std::string data;
  for (auto const value : sample.samples) {
    data += WaveBytes::number(convert(value)).substr(0, size);
  }
  return data;
}

class FileFaults : public ProgramTests {
 protected:
  [[nodiscard]] std::string write(std::string const& name, std::string const& content) const {
    auto file = (surroundings.folder / name).string();
    std::ofstream(file, std::ios::binary) << content;
    return file;
  }
  [[nodiscard]] std::string folder() const { return surroundings.folder.path().string(); }
};

TEST_F(FileFaults, SamplesOfEveryWidthAreHeard) {
  auto const sample = speechSample("hts-slt-s03");
  auto const eight =
      converted(sample, 1, [](int value) { return static_cast<std::uint8_t>((value >> 8) + 128); });
  auto const twentyFour =
      converted(sample, 3, [](int value) { return static_cast<std::int32_t>(value * 256); });
  auto const floating =
      converted(sample, 4, [](int value) { return static_cast<float>(value) / 32768.0F; });
  VekctlRun run(surroundings, {"transcribe", write("8.wav", waveFile(1, 8, eight)),
                               write("24.wav", waveFile(1, 24, twentyFour)),
                               write("float.wav", waveFile(3, 32, floating))});
  EXPECT_EQ(run.wait(), 0) << run.messages();
  ASSERT_THAT(run.lines(), SizeIs(3));
  for (auto const& line : run.lines()) expectSaid("hts-slt-s03", line);
}

TEST_F(FileFaults, AFileThatCanNotBePlayedBeginsNothing) {
  struct Case {
    std::string file;
    std::string reason;
  };
  for (auto const& [file, reason] : std::vector<Case>{
           {folder() + "/none.wav", " can't be read: No such file or directory."},
           {folder(), " can't be read: it is a folder."},
           {write("empty.wav", ""), " holds no audio."},
           {write("silent.wav", waveFile(1, 16, "")), " holds no audio."},
           {write("text.wav", "These are the minutes of the meeting.\n"), " is not a WAV file."},
           {write("cut.wav", waveFile(1, 16, "").substr(0, 30)), " is not a WAV file."},
           {write("law.wav", waveFile(7, 8, "abcd")),
            " is a WAV file of a kind that can't be played: encoding 7 of 8 bits."}}) {
    for (auto const* command : {"record", "transcribe"}) {
      std::vector<std::string> arguments = {command};
      if (arguments[0] == "record") arguments.emplace_back("--from");
      arguments.push_back(file);
      auto const result = run(arguments);
      EXPECT_EQ(result.status, 1);
      EXPECT_EQ(result.output, "");
      EXPECT_EQ(result.messages, "error: \"" + file + "\"" + reason + "\n");
    }
  }
  EXPECT_THAT(storedTranscripts(), IsEmpty());
}

TEST_F(FileFaults, AFaultIsToldToProgramsToo) {
  EXPECT_EQ(
      run({"transcribe", "--json", "none.wav"}).output,
      R"({"file":"none.wav","error":"\"none.wav\" can't be read: No such file or directory."})"
      "\n");
}

TEST_F(FileFaults, ModelsThatAreMissingOrDamagedNameWhatInstallsThem) {
  auto const models = surroundings.folder / "models";
  std::filesystem::create_directory(models);
  auto const installed = surroundings.deployment.at("modelsFolder");
  surroundings.deployment["modelsFolder"] = models.string();
  auto const tellsOf = [&](std::string const& file, std::string const& fault) {
    auto const result = run({"record", "--from", speechFile("hts-slt-s03")});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.messages, HasSubstr("The speech model file " + (models / file).string() +
                                           " " + fault + ". Run scripts/install-dependencies"));
    return result.messages;
  };
  auto const unavailable =
      HasSubstr("error: The speech recognizer isn't available. The log says what it needs.\n");
  EXPECT_THAT(tellsOf("libonnxruntime.so", "is missing"), unavailable);

  for (auto const& file : std::filesystem::directory_iterator(installed)) {
    std::filesystem::create_symlink(file.path(), models / file.path().filename().string());
  }
  auto const damaged = models / "silero-vad-v5.onnx";
  auto content = readFile(damaged).value();
  std::filesystem::remove(damaged);
  std::ofstream(damaged, std::ios::binary) << content.substr(0, content.size() / 2);
  EXPECT_THAT(tellsOf("silero-vad-v5.onnx", "is damaged"), unavailable);
  content[content.size() / 2] ^= 1;
  std::ofstream(damaged, std::ios::binary) << content;
  EXPECT_THAT(tellsOf("silero-vad-v5.onnx", "is damaged"), unavailable);
}

}  // namespace
}  // namespace vek::test
