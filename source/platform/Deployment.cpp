// SPDX-License-Identifier: MIT
#include "platform/Deployment.hpp"

#include <cstdint>
#include <cstdlib>
#include <mutex>
#include <optional>
#include <system_error>

#include <fmt/format.h>
#include <boost/json.hpp>

#include "platform/Files.hpp"
#include "platform/Folders.hpp"
#include "platform/Number.hpp"

namespace vek {
namespace {

DeploymentError badFile(std::filesystem::path const& file, std::string_view reason) {
  return DeploymentError(
      fmt::format("The deployment file {} cannot be used: {}", file.string(), reason));
}

boost::json::object readObject(std::filesystem::path const& file) {
  std::optional<std::string> text;
  try {
    text = readFile(file);
  } catch (std::system_error const& error) {
    throw badFile(file, error.code().message());
  }
  if (!text) throw badFile(file, "there is no such file");

  boost::system::error_code error;
  boost::json::value value = boost::json::parse(*text, error);
  if (error) throw badFile(file, "it is not JSON (" + error.message() + ")");
  if (!value.is_object()) throw badFile(file, "it holds no JSON object");
  return std::move(value.as_object());
}

std::chrono::seconds readSeconds(std::filesystem::path const& file, std::string const& text) {
  auto const count = number<std::uint32_t>(text).value_or(0);
  if (count == 0) throw badFile(file, fmt::format("\"{}\" is no number of seconds", text));
  return std::chrono::seconds(count);
}

Deployment fromEnvironment() {
#ifdef VEK_DEPLOYMENT_FROM_ENVIRONMENT
  if (char const* file = std::getenv("VEK_DEPLOYMENT_FILE"); file && *file) {
    return Deployment::fromFile(file);
  }
#endif
  return Deployment::builtIn();
}

struct Current {
  std::mutex mutex;
  std::optional<Deployment> deployment;
};

Current& current() {
  static auto* const instance = new Current;
  return *instance;
}

}  // namespace

Deployment Deployment::builtIn() {
  return {.backendURL = VEK_BACKEND_URL,
          .recogniserURL = VEK_RECOGNISER_URL,
          .recogniserKey = VEK_RECOGNISER_KEY,
          .authConfiguration = expandedPath(VEK_AUTH_CONFIGURATION),
          .audience = VEK_AUDIENCE,
          .trustedAuthority = expandedPath(VEK_TRUSTED_AUTHORITY),
          .updateFeedURL = VEK_UPDATE_FEED_URL,
          .updatePublicKey = expandedPath(VEK_UPDATE_PUBLIC_KEY),
          .updateInterval = std::chrono::seconds(VEK_UPDATE_INTERVAL),
          .packageManager = VEK_PACKAGE_MANAGER,
          .modelsFolder = expandedPath(VEK_MODELS_FOLDER)};
}

Deployment Deployment::fromFile(std::filesystem::path const& file) {
  Deployment deployment = builtIn();
  for (auto const& [key, value] : readObject(file)) {
    if (!value.is_string()) throw badFile(file, fmt::format("{} is not a text", std::string(key)));
    std::string const text(value.as_string());
    if (key == "backendURL") {
      deployment.backendURL = text;
    } else if (key == "recogniserURL") {
      deployment.recogniserURL = text;
    } else if (key == "recogniserKey") {
      deployment.recogniserKey = text;
    } else if (key == "authConfiguration") {
      deployment.authConfiguration = expandedPath(text);
    } else if (key == "audience") {
      deployment.audience = text;
    } else if (key == "trustedAuthority") {
      deployment.trustedAuthority = expandedPath(text);
    } else if (key == "updateFeedURL") {
      deployment.updateFeedURL = text;
    } else if (key == "updatePublicKey") {
      deployment.updatePublicKey = expandedPath(text);
    } else if (key == "updateInterval") {
      deployment.updateInterval = readSeconds(file, text);
    } else if (key == "packageManager") {
      deployment.packageManager = text;
    } else if (key == "modelsFolder") {
      deployment.modelsFolder = expandedPath(text);
    } else {
      throw badFile(file, fmt::format("it has the unknown key \"{}\"", std::string(key)));
    }
  }
  return deployment;
}

Deployment deployment() {
  std::lock_guard lock(current().mutex);
  if (!current().deployment) current().deployment = fromEnvironment();
  return *current().deployment;
}

void setDeployment(Deployment deployment) {
  std::lock_guard lock(current().mutex);
  current().deployment = std::move(deployment);
}

}  // namespace vek
