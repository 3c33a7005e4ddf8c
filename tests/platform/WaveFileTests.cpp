// SPDX-License-Identifier: MIT
#include "platform/WaveFile.hpp"

#include <gmock/gmock.h>

#include <cmath>
#include <optional>

#include "support/TemporaryFolder.hpp"
#include "support/WaveBytes.hpp"

namespace vek {
namespace {

using test::WaveBytes;
using testing::ElementsAre;
using testing::HasSubstr;
using Samples = std::vector<std::int16_t>;

template <class... Number>
std::string packed(Number... numbers) {
  return (WaveBytes::number(numbers) + ...);
}

class WaveFileTests : public testing::Test {
 protected:
  Samples samplesOf(WaveBytes const& wave) const {
    wave.write(path_);
    WaveFile file(path_);
    Samples samples(64);
    samples.resize(file.read(samples));
    return samples;
  }

  /// The error of a file with this content.
  WaveFileError errorOf(std::string const& bytes) const {
    std::ofstream(path_, std::ios::binary) << bytes;
    return errorOf(path_);
  }
  static WaveFileError errorOf(std::filesystem::path const& path) {
    try {
      WaveFile const file(path);
    } catch (WaveFileError const& error) {
      return error;
    }
    throw std::runtime_error("no error");
  }

  test::TemporaryFolder folder_;
  std::filesystem::path path_ = folder_ / "speech.wav";
};

TEST_F(WaveFileTests, ReadsIntegersOfAnySizeAs16Bits) {
  EXPECT_THAT(samplesOf({.bits = 8, .data = std::string("\x00\x80\xff", 3)}),
              ElementsAre(-32768, 0, 32512));
  EXPECT_THAT(samplesOf({.data = packed(std::int16_t{-32768}, std::int16_t{5})}),
              ElementsAre(-32768, 5));
  EXPECT_THAT(samplesOf({.bits = 24, .data = std::string("\xff\x34\x12\x00\x00\x80", 6)}),
              ElementsAre(0x1234, -32768));
  EXPECT_THAT(samplesOf({.bits = 32, .data = packed(0x12345678, -65536)}), ElementsAre(0x1234, -1));
}

TEST_F(WaveFileTests, ReadsFloatsAndKeepsThemInBounds) {
  EXPECT_THAT(samplesOf({.tag = 3, .bits = 32, .data = packed(0.5F, -1.0F, 7.0F, std::nanf(""))}),
              ElementsAre(16384, -32768, 32767, 0));
  EXPECT_THAT(samplesOf({.tag = 3, .bits = 64, .data = packed(-0.5, 1.0)}),
              ElementsAre(-16384, 32767));
}

TEST_F(WaveFileTests, KeepsRateAndChannelsAndSkipsWhatIsNoSound) {
  WaveBytes const wave{.channels = 2,
                       .sampleRate = 44100,
                       .bits = 24,
                       .isExtensible = true,
                       .note = "odd",
                       .data = std::string("\x00\x01\x00\x00\x02\x00\x00\x03\x00\x00\x04\x00", 12)};
  EXPECT_THAT(samplesOf(wave), ElementsAre(1, 2, 3, 4));
  WaveFile const file(path_);
  EXPECT_EQ(file.format(), AudioFormat(AudioCommonFormat::pcmFormatInt16, 44100, 2, true));
  EXPECT_EQ(file.frameCount(), 2U);
}

TEST_F(WaveFileTests, AFileCutShortGivesItsWholeFrames) {
  auto const data = packed(std::int16_t{1}, std::int16_t{2}, std::int16_t{3});
  for (std::uint32_t const claimed : {1000U, 0xffffffffU}) {
    EXPECT_THAT(samplesOf({.channels = 2, .data = data, .claimedSize = claimed}),
                ElementsAre(1, 2));
  }
}

TEST_F(WaveFileTests, SaysWhyAFileCannotBePlayed) {
  using enum WaveFileError::Reason;
  struct Case {
    std::string bytes;
    WaveFileError::Reason reason;
    std::string text;
  };
  auto const whole = WaveBytes{.data = "sound!"}.bytes();
  for (auto const& [bytes, reason, text] : {
           Case{"", empty, "holds no audio"},
           Case{WaveBytes{}.bytes(), empty, "holds no audio"},
           Case{whole.substr(0, 36), empty, "holds no audio"},
           Case{whole.substr(0, 20), notAWaveFile, "is not a WAV file"},
           Case{"RIFF", notAWaveFile, "is not a WAV file"},
           Case{std::string(4096, 'x'), notAWaveFile, "is not a WAV file"},
           Case{WaveBytes{.tag = 0x55, .data = "mp3!"}.bytes(), unsupported, "encoding 85"},
           Case{WaveBytes{.channels = 0, .data = "x"}.bytes(), unsupported, "0 channels"},
           Case{WaveBytes{.sampleRate = 0, .data = "xx"}.bytes(), unsupported, "0 samples"},
           Case{WaveBytes{.bits = 12, .data = "xx"}.bytes(), unsupported, "of 12 bits"},
       }) {
    auto const error = errorOf(bytes);
    EXPECT_EQ(error.reason(), reason) << error.what();
    EXPECT_THAT(error.what(), HasSubstr(text));
    EXPECT_THAT(error.what(), HasSubstr("speech.wav"));
  }
}

TEST_F(WaveFileTests, SaysWhyAFileCannotBeRead) {
  EXPECT_THAT(errorOf(folder_ / "none.wav").what(), HasSubstr("No such file or directory"));
  EXPECT_THAT(errorOf(folder_.path()).what(), HasSubstr("it is a folder"));
}

}  // namespace
}  // namespace vek
