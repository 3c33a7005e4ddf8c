// SPDX-License-Identifier: MIT
#include "app/CommandLine.hpp"

#include <fmt/format.h>

#include "runtime/Match.hpp"

namespace vek {
namespace {

using testing::internal::CaptureStderr;
using testing::internal::CaptureStdout;
using testing::internal::GetCapturedStderr;
using testing::internal::GetCapturedStdout;

std::string described(CommandLine::Record const& record) {
  auto text = "record " + record.file.value_or("-").string();
  text += record.provider ? fmt::format(" {}", rawValue(*record.provider)) : " -";
  return text + (record.duration ? fmt::format(" {}s", record.duration->count()) : " -");
}

/// What a line means, or the exit status of one that means nothing.
std::string meaning(std::vector<char const*> arguments) {
  arguments.insert(arguments.begin(), "vekctl");
  auto const parsed = parseCommandLine(static_cast<int>(arguments.size()), arguments.data());
  if (auto const* status = std::get_if<int>(&parsed)) return std::to_string(*status);
  auto const& line = std::get<CommandLine>(parsed);
  auto const text = std::visit(
      detail::Overloaded{
          [](CommandLine::Record const& record) { return described(record); },
          [](CommandLine::Transcribe const& transcribe) {
            std::string files = "transcribe";
            for (auto const& file : transcribe.files) files += " " + file.string();
            return files;
          },
          [](CommandLine::Provider const& provider) {
            return fmt::format("provider {}", provider.choice ? rawValue(*provider.choice) : "-");
          },
          [](CommandLine::Transcripts const& transcripts) {
            return fmt::format("transcripts {} {} '{}'", transcripts.customer.value_or("-"),
                               transcripts.withoutCustomer, transcripts.text);
          },
          [](CommandLine::Watch const& watch) {
            return fmt::format("watch {}s", watch.pause.count());
          },
          [](CommandLine::Customers) { return std::string("customers"); },
          [](CommandLine::Show const& show) { return "show " + show.id.lowerCaseText(); },
          [](CommandLine::Analyse const& analyse) {
            return "analyse " + analyse.id.lowerCaseText();
          },
          [](CommandLine::Assign const& assign) {
            return "assign " + assign.id.lowerCaseText() + " " + assign.customer;
          },
          [](CommandLine::Export const& exported) {
            return fmt::format("export {} {}", exported.id.lowerCaseText(),
                               static_cast<int>(exported.format));
          },
          [](CommandLine::LogIn) { return std::string("login"); },
          [](CommandLine::LogOut) { return std::string("logout"); },
          [](CommandLine::Toggle) { return std::string("toggle"); },
          [](CommandLine::Autostart const& autostart) {
            if (!autostart.isWanted) return std::string("autostart");
            return fmt::format("autostart {}", *autostart.isWanted);
          },
          [](CommandLine::Updates const& updates) {
            if (!updates.isWanted) return std::string("updates");
            return fmt::format("updates {}", *updates.isWanted);
          },
          [](CommandLine::WhoAmI) { return std::string("whoami"); },
          [](CommandLine::Callback const& callback) { return "callback " + callback.url; }},
      line.command);
  return text + (line.asJSON ? " json" : "");
}

TEST(CommandLine, MeansWhatItSays) {
  EXPECT_EQ(meaning({"record"}), "record - - -");
  EXPECT_EQ(meaning({"record", "--from", "a b.wav", "--json"}), "record a b.wav - - json");
  EXPECT_EQ(meaning({"record", "--provider", "apple", "--for", "2.5"}), "record - apple 2.5s");
  EXPECT_EQ(meaning({"record", "--provider=deepgram"}), "record - deepgram -");
  EXPECT_EQ(meaning({"transcribe", "a.wav", "b.wav"}), "transcribe a.wav b.wav");
  EXPECT_EQ(meaning({"transcribe", "--json", "--", "-a.wav"}), "transcribe -a.wav json");
  EXPECT_EQ(meaning({"provider", "--json"}), "provider - json");
  EXPECT_EQ(meaning({"provider", "deepgram"}), "provider deepgram");
  EXPECT_EQ(meaning({"transcripts", "--json"}), "transcripts - false '' json");
  EXPECT_EQ(meaning({"transcripts", "--customer", "A & B", "--text", "an offer"}),
            "transcripts A & B false 'an offer'");
  EXPECT_EQ(meaning({"transcripts", "--without-customer"}), "transcripts - true ''");
  EXPECT_EQ(meaning({"watch"}), "watch 30s");
  EXPECT_EQ(meaning({"watch", "--every", "0.5"}), "watch 0.5s");
  EXPECT_EQ(meaning({"customers"}), "customers");
  constexpr auto id = "41BCF776-AA28-4CCF-8362-93FA802F7F6C";
  std::string const lower = " 41bcf776-aa28-4ccf-8362-93fa802f7f6c";
  EXPECT_EQ(meaning({"show", id}), "show" + lower);
  EXPECT_EQ(meaning({"analyse", id}), "analyse" + lower);
  EXPECT_EQ(meaning({"assign", id, "A & B"}), "assign" + lower + " A & B");
  EXPECT_EQ(meaning({"export", id}), "export" + lower + " 0");
  EXPECT_EQ(meaning({"export", id, "--format", "json"}), "export" + lower + " 2");
  EXPECT_EQ(meaning({"login", "--json"}), "login json");
  EXPECT_EQ(meaning({"logout"}), "logout");
  EXPECT_EQ(meaning({"whoami"}), "whoami");
  EXPECT_EQ(meaning({"callback", "-"}), "callback -");
  EXPECT_EQ(meaning({"toggle"}), "toggle");
  EXPECT_EQ(meaning({"autostart"}), "autostart");
  EXPECT_EQ(meaning({"autostart", "off"}), "autostart false");
  EXPECT_EQ(meaning({"updates"}), "updates");
  EXPECT_EQ(meaning({"updates", "on"}), "updates true");
}

TEST(CommandLine, AskingForHelpIsNoMistake) {
  CaptureStdout();
  EXPECT_EQ(meaning({"--help"}), "0");
  EXPECT_EQ(meaning({"record", "--help"}), "0");
  EXPECT_THAT(GetCapturedStdout(), testing::HasSubstr("--provider apple|deepgram"));
}

TEST(CommandLine, AMistakeIsNamed) {
  struct Mistake {
    std::vector<char const*> arguments;
    std::string message;
  };
  for (auto const& [arguments, message] : std::vector<Mistake>{
           {{}, "A subcommand is required"},
           {{"play"}, "A subcommand is required"},
           {{"record", "--loud"}, "--loud"},
           {{"record", "--provider", "other"}, "--provider: other not in {apple,deepgram}"},
           {{"record", "--for", "0"}, "--for"},
           {{"record", "--for", "soon"}, "--for"},
           {{"provider", "other"}, "provider: other not in {apple,deepgram}"},
           {{"provider", "apple", "deepgram"}, "deepgram"},
           {{"autostart", "maybe"}, "choice: maybe not in {on,off}"},
           {{"transcribe"}, "files is required"},
           {{"transcripts", "--customer", "A", "--without-customer"}, "excludes"},
           {{"watch", "--every", "0"}, "--every"},
           {{"watch", "--every", "1e300"}, "--every"},
           {{"assign", "41BCF776-AA28-4CCF-8362-93FA802F7F6C"}, "customer is required"},
           {{"export", "41BCF776-AA28-4CCF-8362-93FA802F7F6C", "--format", "pdf"}, "--format"},
           {{"show", "first"}, "'first' is not a transcript's identifier"}}) {
    CaptureStderr();
    EXPECT_EQ(meaning(arguments), "2");
    EXPECT_THAT(GetCapturedStderr(), testing::HasSubstr(message));
  }
}

}  // namespace
}  // namespace vek
