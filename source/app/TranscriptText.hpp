// SPDX-License-Identifier: MIT
#pragma once

#include <boost/json/object.hpp>

#include <string>

#include "app/CommandLine.hpp"
#include "records/Customer.hpp"
#include "records/Transcript.hpp"
#include "runtime/IdentifiedArray.hpp"

namespace vek {

using Customers = IdentifiedArray<Customer>;

/// The name of the transcript's customer; empty when it has none, or one that is not known.
std::string customerName(Transcript const& transcript, Customers const& customers);

/// A transcript on one line: identifier, local time and customer.
std::string row(Transcript const& transcript, Customers const& customers);
/// The same for programs.
boost::json::object object(Transcript const& transcript, Customers const& customers);

/// The text, or the analysis, that was fetched. Throws what its fetch failed with.
std::string const& fetchedText(TranscriptContentState const& state);

/// The whole of a fetched transcript. Throws as `fetchedText` does.
std::string exported(Transcript const& transcript, Customers const& customers,
                     CommandLine::Export::Format format);

}  // namespace vek
