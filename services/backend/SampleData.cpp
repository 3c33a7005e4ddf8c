// SPDX-License-Identifier: MIT
#include "services/backend/SampleData.hpp"

#include <fmt/format.h>

#include <array>
#include <string_view>

#include "records/DateFormatter.hpp"

namespace vek::services {

namespace {

struct Sample {
  std::string_view name;
  std::string_view domain;
  std::string_view agentStatus;
  int daysSinceLastEvent;
  /// 1 is the most urgent; 0 is none.
  int priority;
  std::vector<std::string_view> categories;
  std::vector<std::string_view> notes;
  std::vector<std::string_view> briefs;
};

std::vector<Sample> const samples = {
    {"Alder & Finch Logistics",
     "alderfinch.example",
     "ACTIVE",
     1,
     1,
     {"CALLS", "EMAILS", "CONTRACTS"},
     {"Renewal terms", "Warehouse rollout plan"},
     {"Renewal call: open questions on price", "Rollout in the northern warehouses"}},
    {"Brightwater Dairy",
     "brightwater.example",
     "ACTIVE",
     2,
     0,
     {"CALLS"},
     {"First meeting"},
     {"Cold chain monitoring: first offer"}},
    {"Cobalt Ridge Mining",
     "cobaltridge.example",
     "PAUSED",
     16,
     3,
     {"EMAILS", "CONTRACTS"},
     {"Safety review"},
     {"Safety review before the next contract"}},
    {"Delmar Hotels",
     "delmarhotels.example",
     "ACTIVE",
     4,
     0,
     {"CALLS", "EMAILS"},
     {"Guest survey results"},
     {"Guest survey: what the numbers say"}},
    {"Eastgate Insurance",
     "eastgate.example",
     "ACTIVE",
     3,
     2,
     {"CALLS", "EMAILS", "TICKETS"},
     {"Claims portal requirements", "Security questionnaire"},
     {"Claims portal: decision makers and dates"}},
    {"Fernhill Schools",
     "fernhill.example",
     "NEW",
     7,
     0,
     {"EMAILS"},
     {"Introduction"},
     {"Introduction to the school board"}},
    {"Granite Peak Outfitters",
     "granitepeak.example",
     "ACTIVE",
     5,
     0,
     {"CALLS", "ORDERS"},
     {"Spring catalogue"},
     {"Spring catalogue: quantities and delivery"}},
    {"Harbor Light Clinics",
     "harborlight.example",
     "ACTIVE",
     1,
     1,
     {"CALLS", "EMAILS", "CONTRACTS"},
     {"Pilot feedback", "Data protection"},
     {"Pilot feedback from three clinics", "Data protection: answers to prepare"}},
    {"Ironwood Construction",
     "ironwood.example",
     "PAUSED",
     34,
     0,
     {"CONTRACTS"},
     {"Change orders"},
     {"Change orders and the revised budget"}},
    {"Juniper Street Bakery",
     "juniperstreet.example",
     "NEW",
     9,
     0,
     {"CALLS"},
     {"Opening hours of the new shop"},
     {"New shop: what they need by opening day"}},
    {"Kestrel Airfreight",
     "kestrelair.example",
     "ACTIVE",
     6,
     2,
     {"EMAILS", "TICKETS"},
     {"Tracking interface"},
     {"Tracking interface: open tickets"}},
    {"Lakeshore Energy Cooperative",
     "lakeshore.example",
     "ACTIVE",
     2,
     0,
     {"CALLS", "EMAILS", "ORDERS"},
     {"Meter replacement"},
     {"Meter replacement: schedule of the second phase"}},
};

constexpr std::array<std::string_view, 4> priorityLabels = {"", "High", "Medium", "Low"};

std::string dayText(Date now, int daysAgo) {
  return DateFormatter::format(now - std::chrono::days(daysAgo));
}

/// Who keeps a record: the same in all of them.
struct Keeper {
  std::string organisation = UUID::random().lowerCaseText();
  std::string user = UUID::random().lowerCaseText();
};

NoteDTO note(Sample const& sample, std::string_view name, UUID customer, Keeper const& keeper,
             Date now) {
  auto const artifact = UUID::random().lowerCaseText();
  return {.name = std::string(name),
          .customerId = customer.lowerCaseText(),
          .artifactType = "NOTE",
          .artifactId = artifact,
          .documentPath = fmt::format("notes/{}/{}.md", sample.domain, artifact),
          .createdOnStr = dayText(now, sample.daysSinceLastEvent + 20),
          .lastModifiedOnStr = dayText(now, sample.daysSinceLastEvent),
          .publicId = UUID::random().lowerCaseText(),
          .vekOrgId = keeper.organisation,
          .vekUserId = keeper.user};
}

PriorityDTO priority(Sample const& sample, Keeper const& keeper, Date now) {
  return {.label = std::string(priorityLabels.at(static_cast<std::size_t>(sample.priority))),
          .value = sample.priority,
          .createdOnStr = dayText(now, sample.daysSinceLastEvent + 40),
          .lastModifiedOnStr = dayText(now, sample.daysSinceLastEvent),
          .publicId = UUID::random().lowerCaseText(),
          .vekOrgId = keeper.organisation,
          .vekUserId = keeper.user};
}

CustomerDTO customer(Sample const& sample, Keeper const& keeper, Date now) {
  CustomerDTO record{.customerName = std::string(sample.name),
                     .id = UUID::random(),
                     .agentStatus = std::string(sample.agentStatus),
                     .lastEventDate = dayText(now, sample.daysSinceLastEvent),
                     .dataCategories = {sample.categories.begin(), sample.categories.end()},
                     .priority = {},
                     .notes = {},
                     .domain = std::string(sample.domain)};
  if (sample.priority > 0) record.priority = priority(sample, keeper, now);
  for (auto const name : sample.notes) {
    record.notes.push_back(note(sample, name, record.id, keeper, now));
  }
  return record;
}

}  // namespace

SampleData::SampleData(Date now) {
  Keeper const keeper;
  for (auto const& sample : samples) {
    customers.push_back(customer(sample, keeper, now));
    for (auto const title : sample.briefs) {
      briefs.push_back({.customerID = customers.back().id,
                        .brief = {.title = std::string(title),
                                  .sessionID = UUID::random(),
                                  .insightID = UUID::random(),
                                  .readStatus = sample.priority == 1 ? "UNREAD" : "READ"}});
    }
  }
}

}  // namespace vek::services
