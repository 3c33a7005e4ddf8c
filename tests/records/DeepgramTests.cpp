// SPDX-License-Identifier: MIT
#include <boost/json.hpp>

#include "records/DecodingError.hpp"
#include "records/DeepgramMetadataDTO.hpp"
#include "records/DeepgramResultDTO.hpp"
#include "records/JSON.hpp"

namespace vek {
namespace {

constexpr std::string_view result = R"({
  "type": "Results", "channel_index": [0, 1], "duration": 1.5, "start": 2.5, "is_final": true,
  "speech_final": false,
  "channel": {"alternatives": [{"transcript": "so it is", "confidence": 0.75, "words": [
    {"word": "so", "start": 0.25, "end": 0.5, "confidence": 0.5, "speaker": 3}]}]},
  "metadata": {"request_id": "r", "model_info": {"name": "n", "version": "v", "arch": "a"},
    "model_uuid": "u"},
  "from_finalize": true})";

constexpr std::string_view closing = R"({
  "type": "Metadata", "transaction_key": "t", "request_id": "r", "sha256": "s", "created": "c",
  "duration": 3.5, "channels": 2, "models": ["m"],
  "model_info": {"m": {"name": "n", "version": "v", "arch": "a"}}})";

Deepgram::ModelInfoDTO const modelInfo{.name = "n", .version = "v", .arch = "a"};

TEST(DeepgramRecords, EachIsReadAndWrittenWhole) {
  Deepgram::ResultDTO const expectedResult{
      .type = "Results",
      .channelIndex = {0, 1},
      .duration = 1.5,
      .start = 2.5,
      .isFinal = true,
      .speechFinal = false,
      .channel =
          {{{.transcript = "so it is",
             .confidence = 0.75,
             .words =
                 {{.word = "so", .start = 0.25, .end = 0.5, .confidence = 0.5, .speaker = 3}}}}},
      .metadata = {.requestId = "r", .modelInfo = modelInfo, .modelUUID = "u"},
      .fromFinalize = true};
  EXPECT_EQ(json::decode<Deepgram::ResultDTO>(result), expectedResult);
  EXPECT_EQ(boost::json::parse(json::encode(expectedResult)), boost::json::parse(result));

  Deepgram::MetadataDTO const expectedClosing{.type = "Metadata",
                                              .transactionKey = "t",
                                              .requestId = "r",
                                              .sha256 = "s",
                                              .created = "c",
                                              .duration = 3.5,
                                              .channels = 2,
                                              .models = {{"m"}},
                                              .modelInfo = {{{"m", modelInfo}}}};
  EXPECT_EQ(json::decode<Deepgram::MetadataDTO>(closing), expectedClosing);
  EXPECT_EQ(boost::json::parse(json::encode(expectedClosing)), boost::json::parse(closing));
}

template <class Record>
std::string errorOf(boost::json::value const& value) {
  try {
    std::ignore = json::decode<Record>(boost::json::serialize(value));
  } catch (DecodingError const& error) {
    return error.what();
  }
  return {};
}

/// Takes each key of `part`, which stands at `path` within `whole`, away in turn and hands the rest
/// to `check`.
template <class Check>
void withEachKeyMissing(boost::json::value& whole, boost::json::value& part,
                        std::string const& path, Check const& check) {
  if (auto* const list = part.if_array()) {
    for (std::size_t i = 0; i < list->size(); ++i)
      withEachKeyMissing(whole, (*list)[i], path + '[' + std::to_string(i) + ']', check);
  }
  auto* const object = part.if_object();
  if (!object) return;
  std::vector<std::string> keys;
  for (auto const& member : *object) keys.emplace_back(member.key());
  for (auto const& key : keys) {
    auto const at = path + '.' + key;
    withEachKeyMissing(whole, (*object)[key], at, check);
    auto const value = (*object)[key];
    object->erase(key);
    check(whole, at);
    (*object)[key] = value;
  }
}

TEST(DeepgramRecords, WithoutAnyRequiredKeyAMessageIsNoRecord) {
  int count = 0;
  auto whole = boost::json::parse(result);
  withEachKeyMissing(whole, whole, "$", [&](auto const& rest, std::string const& path) {
    EXPECT_EQ(errorOf<Deepgram::ResultDTO>(rest), path + ": missing");
    ++count;
  });
  EXPECT_EQ(count, 9 + 1 + 3 + 5 + 3 + 3);

  whole = boost::json::parse(closing);
  withEachKeyMissing(whole, whole, "$", [&](auto const& rest, std::string const& path) {
    bool const isOptional =
        path == "$.models" || path == "$.model_info" || path == "$.model_info.m";
    EXPECT_EQ(errorOf<Deepgram::MetadataDTO>(rest), isOptional ? "" : path + ": missing");
  });
}

}  // namespace
}  // namespace vek
