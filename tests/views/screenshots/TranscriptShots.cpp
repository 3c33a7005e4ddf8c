// SPDX-License-Identifier: MIT
#include "TranscriptShots.hpp"

namespace vek::test {

namespace {

QString const said = QStringLiteral(
    "Good morning, this is the service desk. How can I help you?\n"
    "My last invoice shows the old address, and I would like to have it sent again to the new "
    "one.\n"
    "Of course. Has anything else changed since spring?\n"
    "No, only the street and the number.");

QString const summary = QStringLiteral(R"(# Corrected invoice

The customer moved in **spring** and asks for invoice `INV-20418` with the *new* address. See
[the account](https://example.org/a) for what was sent before.

## What to do

- [x] Confirm the new address
- [ ] Correct the invoice and send it again
- [ ] Tell the accounts team

## How it went

| Topic            | From |  To   |
|:-----------------|:----:|------:|
| Greeting         | 0:00 |  0:18 |
| The old invoice  | 0:18 |  2:05 |
| The new address  | 2:05 | 12:40 |

> "I have told you this **twice** already."
>
> > The first call is on record.

Everything was agreed in the end.
)");

QString const allBlocks = summary + QStringLiteral(R"(
---

### Steps of the next call

1. Open the record
2. Compare both addresses:
   - the one of the invoice
   - the one of the account
     - with its history
3. Send the copy ~~by post~~ by mail

10. Close the case

#### Sent to the backend

```json
{
  "invoice": "INV-20418",
  "address": { "street": "Harbour Lane", "number": 7, "city": "Northwind", "note": "ring twice at the side door" }
}
```

##### Seen before

Two other customers<br>had the same trouble. ![A chart of calls](chart.png) shows when.

###### Written by a model

<details>
<summary>Raw</summary>
</details>

![The new letterhead](letterhead.png)
)");

}  // namespace

std::vector<TranscriptShot> transcriptShots() {
  auto const reason = QStringLiteral("The server could not be reached. Check your connection.");
  QVariantMap const unassigned = {{"text", said}, {"analysis", summary}};
  auto const with = [&](QVariantMap facts) {
    facts.insert(unassigned);
    return facts;
  };
  return {
      {"transcript-initial", {}},
      {"transcript-loading", {{"loading", true}}},
      {"transcript-error", {{"error", reason}}},
      {"transcript-loading-analysis", {{"text", said}, {"loadingAnalysis", true}}},
      {"transcript-error-analysis", {{"text", said}, {"analysisError", reason}}},
      {"transcript-no-content", {{"text", ""}, {"assigned", true}}},
      {"transcript", with({{"assigned", true}}), {480, 640}},
      {"transcript-choose", with({})},
      {"transcript-assign", with({{"selected", 0}}), {480, 640}},
      {"transcript-assigning", with({{"selected", 0}, {"assigning", true}})},
      {"transcript-save", with({{"assigned", true}}), {400, 400}, true},
      {"transcript-narrow",
       {{"text", said}, {"analysis", allBlocks}, {"assigned", true}},
       {300, 900}},
      {"transcript-blocks",
       {{"text", said}, {"analysis", allBlocks}, {"assigned", true}},
       {640, 1250}},
  };
}

}  // namespace vek::test
