// SPDX-License-Identifier: MIT
#include "services/backend/Backend.hpp"

#include <fmt/format.h>

#include <utility>

#include "platform/Log.hpp"
#include "records/CompleteTranscriptDTO.hpp"
#include "records/CompletedTranscriptDTO.hpp"
#include "records/CreateTranscriptDTO.hpp"
#include "records/DateFormatter.hpp"
#include "records/DecodingError.hpp"
#include "records/DeletedTranscriptDTO.hpp"
#include "records/JSON.hpp"
#include "records/NewTranscriptDTO.hpp"
#include "records/TranscriptContentDTO.hpp"
#include "records/UpdateTranscriptDTO.hpp"

namespace vek::services {

namespace {

constexpr std::string_view base = "/api/v1/agents/";
/// The path of one transcript goes on with its identifier.
constexpr std::string_view transcripts = "transcripts/";

/// How many analyses by rules are written at a time.
constexpr std::size_t groupSize = 256;

Logger const logger("backend");

/// The body of getTranscriptAnalysis.
struct AnalysisQuery {
  std::string transcript;
  static constexpr auto fields() {
    return std::tuple{Field{"transcript", &AnalysisQuery::transcript}};
  }
};

/// The body of getTranscriptContent.
struct ContentQuery {
  std::string transcriptID;
  static constexpr auto fields() {
    return std::tuple{Field{"transcript_id", &ContentQuery::transcriptID}};
  }
};

UUID identifier(std::string_view name, std::string_view text) {
  if (auto const id = UUID::parse(text)) return *id;
  throw Refusal(400, fmt::format("{} is no identifier.", name));
}

std::optional<UUID> optionalIdentifier(std::string_view name,
                                       std::optional<std::string> const& text) {
  if (!text) return std::nullopt;
  return identifier(name, std::string_view(*text));
}

Refusal noTranscript(UUID id) {
  return {404, fmt::format("There is no transcript {}.", id.lowerCaseText())};
}

Refusal noCustomer(UUID id) {
  return {404, fmt::format("There is no customer {}.", id.lowerCaseText())};
}

std::string textOf(std::exception_ptr const& failure) {
  try {
    std::rethrow_exception(failure);
  } catch (std::exception const& error) {
    return error.what();
  }
}

template <class Record>
Response answer(Record const& record) {
  return {.status = 200, .body = json::encode(record)};
}

}  // namespace

struct Backend::Route {
  std::string_view method;
  std::string_view path;
  void (Backend::*operation)(Call&);
  /// The path goes on with an identifier.
  bool takesIdentifier = false;

  [[nodiscard]] bool matches(std::string_view requested) const {
    return takesIdentifier ? requested.starts_with(path) : requested == path;
  }
};

Backend::Route const Backend::routes[] = {
    {"POST", "getTranscriptAnalysis", &Backend::getTranscriptAnalysis},
    {"GET", "customers", &Backend::getCustomers},
    {"GET", "preMeetingsBriefs", &Backend::getPreMeetingsBriefs},
    {"POST", "createMeetingTranscript", &Backend::createTranscript},
    {"POST", "appendMeetingTranscript", &Backend::updateTranscript},
    {"POST", "completeMeetingTranscript", &Backend::completeTranscript},
    {"GET", "transcripts", &Backend::getAllTranscripts},
    {"DELETE", transcripts, &Backend::deleteTranscript, true},
    {"GET", "getAllTranscriptsMetadata", &Backend::getAllTranscriptsMetadata},
    {"POST", "getTranscriptContent", &Backend::getTranscriptContent},
};

void Backend::handle(Request request, Reply reply) {
  auto const name = request.method + " " + request.path;
  auto const fail = [&](int status, std::string_view message, std::string_view cause) {
    logger.error(fmt::format("{}: {}", name, cause));
    reply(Response::refusal(status, message));
  };
  try {
    dispatch(std::move(request), reply);
  } catch (Refusal const& refusal) {
    reply(Response::refusal(refusal.status, refusal.what()));
  } catch (DecodingError const& error) {
    reply(Response::refusal(400, error.what()));
  } catch (DatabaseError const& error) {
    if (error.kind == DatabaseError::Kind::full) {
      fail(507, "There is no room left to store this.", error.what());
    } else {
      fail(500, "The backend's database failed.", error.what());
    }
  } catch (std::exception const& error) {
    fail(500, "The backend failed.", error.what());
  }
}

Backend::Backend(BackendStore& store, Authorization authorization,
                 ChatCompletions::Configuration chat)
    : store_(store), authorization_(std::move(authorization)) {
  if (chat.url.empty()) return;
  queue_ = std::make_unique<AnalysisQueue>(
      [this](AnalysisQueue::Text const& text, AnalysisQueue::Waiter done) {
        makeAnalysis(text, std::move(done));
      });
  chat_ = std::make_unique<ChatCompletions>(std::move(chat));
  maker_ = chat_->maker();
}

Backend::~Backend() {
  stop();
}

void Backend::stop() {
  if (queue_) queue_->stop();
  if (chat_) chat_->stop();
  std::lock_guard lock(keeping_);
  keep(std::exchange(unkept_, {}));
}

UserID Backend::authorized(Request const& request) {
  constexpr std::string_view scheme = "Bearer ";
  auto const value = request.header("Authorization");
  if (!value.starts_with(scheme)) throw Refusal(401, "An access token is required.");
  auto const token = value.substr(scheme.size());
  auto const user = authorization_(token);
  if (!user) throw Refusal(401, "The access token is not valid.");
  return *user;
}

void Backend::dispatch(Request request, Reply reply) {
  auto const user = authorized(request);
  std::string_view const path = request.path;
  auto const operation = path.starts_with(base) ? path.substr(base.size()) : std::string_view();
  std::string allowed;
  for (auto const& route : routes) {
    if (!route.matches(operation)) continue;
    if (route.method == request.method) {
      Call call{user, std::move(request), std::move(reply)};
      return (this->*route.operation)(call);
    }
    allowed = route.method;
  }
  if (allowed.empty()) throw Refusal(404, "There is no such endpoint.");
  auto response = Response::refusal(405, "This endpoint takes " + allowed + " only.");
  response.headers.emplace_back("Allow", allowed);
  reply(std::move(response));
}

void Backend::getTranscriptAnalysis(Call& call) {
  auto query = json::decode<AnalysisQuery>(call.request.body);
  if (!chat_ || query.transcript.empty()) return call.reply(answer(summary(query.transcript)));
  chat_->analyse(std::move(query.transcript),
                 [this, reply = std::move(call.reply)](Result<std::string> analysis) {
                   if (analysis) return reply(answer(analysis.value()));
                   auto const failure = textOf(analysis.error());
                   didFail(failure);
                   reply(Response::refusal(502, failure));
                 });
}

void Backend::getCustomers(Call& call) {
  call.reply({.status = 200, .body = store_.customers(call.user)});
}

void Backend::getPreMeetingsBriefs(Call& call) {
  auto const customer = optionalIdentifier("customer_id", call.request.queryItem("customer_id"));
  call.reply(answer(store_.briefs(call.user, customer)));
}

void Backend::createTranscript(Call& call) {
  auto const body = json::decode<CreateTranscriptDTO>(call.request.body);
  auto const customer = optionalIdentifier("customer_id", body.customerID);
  if (customer && !store_.hasCustomer(call.user, *customer)) throw noCustomer(*customer);
  // Each transcript belongs to an insight: one that is not named is new.
  BackendStore::NewTranscript const transcript{
      .id = UUID::random(),
      .insightID = optionalIdentifier("insight_id", body.insightID).value_or(UUID::random()),
      .customerID = customer,
      .createdOn = std::chrono::system_clock::now()};
  store_.create(call.user, transcript);
  call.reply(answer(NewTranscriptDTO{.id = transcript.id,
                                     .insightID = transcript.insightID,
                                     .createdOn = DateFormatter::format(transcript.createdOn),
                                     .customerID = transcript.customerID,
                                     .status = TranscriptionStatusDTO::started}));
}

void Backend::updateTranscript(Call& call) {
  auto const body = json::decode<UpdateTranscriptDTO>(call.request.body);
  auto const id = identifier("transcript_id", body.transcriptID);
  if (!store_.append(call.user, id, body.transcript, std::chrono::system_clock::now())) {
    throw noTranscript(id);
  }
  call.reply({.status = 200, .body = "{}"});
}

void Backend::completeTranscript(Call& call) {
  auto const body = json::decode<CompleteTranscriptDTO>(call.request.body);
  auto const id = identifier("transcript_id", body.transcriptID);
  auto const customer = identifier("customer_id", body.customerID);
  if (!store_.hasCustomer(call.user, customer)) throw noCustomer(customer);
  using Completion = BackendStore::Completion;
  auto const completion =
      store_.complete(call.user, id, customer, std::chrono::system_clock::now());
  if (completion == Completion::noTranscript) throw noTranscript(id);
  if (completion == Completion::hasAnotherCustomer) {
    throw Refusal(409, "The transcript has another customer already.");
  }
  call.reply(answer(CompletedTranscriptDTO{.status = TranscriptionStatusDTO::completed,
                                           .llmAnalysisStatus = "ON_REQUEST"}));
}

void Backend::getAllTranscripts(Call& call) {
  auto const customer = optionalIdentifier("customer_id", call.request.queryItem("customer_id"));
  auto const insight = optionalIdentifier("insight_id", call.request.queryItem("insight_id"));
  call.reply(answer(store_.transcripts(call.user, customer, insight)));
}

void Backend::deleteTranscript(Call& call) {
  auto const text = std::string_view(call.request.path).substr(base.size() + transcripts.size());
  auto const id = identifier("The end of the path", text);
  if (!store_.remove(call.user, id)) throw noTranscript(id);
  call.reply(answer(DeletedTranscriptDTO{.id = id, .status = TranscriptionStatusDTO::deleted}));
}

void Backend::getAllTranscriptsMetadata(Call& call) {
  call.reply(answer(store_.metadata(call.user)));
}

void Backend::getTranscriptContent(Call& call) {
  auto const query = json::decode<ContentQuery>(call.request.body);
  auto const id = identifier("transcript_id", query.transcriptID);
  auto text = store_.text(call.user, id);
  if (!text) throw noTranscript(id);
  auto const reply = [text, reply = std::move(call.reply)](std::optional<std::string> analysis) {
    // Without an analysis the text is still worth having.
    reply(answer(TranscriptContentDTO{text, std::move(analysis)}));
  };
  if (text->empty()) return reply("");
  if (auto kept = store_.analysis(id, maker_, text->size())) return reply(std::move(kept));
  if (chat_) {
    return queue_->ask({.transcript = id, .size = text->size(), .user = call.user}, reply);
  }
  auto analysis = summary(*text);
  keepSoon({.transcript = id, .maker = maker_, .textSize = text->size(), .text = analysis});
  reply(std::move(analysis));
}

void Backend::makeAnalysis(AnalysisQueue::Text const& wanted, AnalysisQueue::Waiter done) {
  std::optional<std::string> text;
  try {
    // Somebody may have asked just as it was done.
    auto kept = store_.analysis(wanted.transcript, maker_, wanted.size);
    if (kept) return done(std::move(kept));
    text = store_.text(wanted.user, wanted.transcript);
  } catch (DatabaseError const& error) {
    didFail(error.what());
  }
  // It may have grown or gone while it waited.
  if (!text || text->size() != wanted.size) return done(std::nullopt);
  chat_->analyse(std::move(*text),
                 [this, wanted, done = std::move(done)](Result<std::string> analysis) {
                   if (analysis) {
                     keep({{.transcript = wanted.transcript,
                            .maker = maker_,
                            .textSize = wanted.size,
                            .text = analysis.value()}});
                     done(std::move(analysis).value());
                   } else {
                     didFail(textOf(analysis.error()));
                     done(std::nullopt);
                   }
                 });
}

/// To write each by itself would take longer than to make it.
void Backend::keepSoon(BackendStore::Analysis analysis) {
  std::vector<BackendStore::Analysis> group;
  {
    std::lock_guard lock(keeping_);
    unkept_.push_back(std::move(analysis));
    if (unkept_.size() < groupSize) return;
    group.swap(unkept_);
  }
  keep(group);
}

void Backend::keep(std::vector<BackendStore::Analysis> const& analyses) {
  try {
    store_.setAnalyses(analyses);
  } catch (DatabaseError const& error) {
    didFail(fmt::format("Analyses were not kept: {}", error.what()));
  }
}

/// An endpoint that fails does so for each text of a list: the log says it once a minute.
void Backend::didFail(std::string const& failure) {
  auto const now = AnalysisQueue::Clock::now();
  {
    std::lock_guard lock(failing_);
    auto const [logged, isNew] = lastLogged_.try_emplace(failure, now);
    if (!isNew && now - logged->second < std::chrono::minutes(1)) return;
    logged->second = now;
  }
  logger.error(failure);
}

}  // namespace vek::services
