// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <filesystem>
#include <stdexcept>
#include <string>

namespace vek {

/// What differs between one installation of the product and another. The values are fixed at
/// build time; builds for development and tests may override them with a JSON file of the same
/// names, named by VEK_DEPLOYMENT_FILE.
struct Deployment {
  /// Scheme, host and port of the backend, without a path.
  std::string backendURL = {};
  /// Scheme, host and port of the hosted recogniser, without a path.
  std::string recogniserURL = {};
  /// What the hosted recogniser knows the product by. A secret.
  std::string recogniserKey = {};
  /// The property list that names the identity provider, and the program to it.
  std::filesystem::path authConfiguration = {};
  /// The identifier by which the identity provider knows the backend.
  std::string audience = {};
  /// PEM file of an authority that is trusted beside the system's; empty for none.
  std::filesystem::path trustedAuthority = {};
  /// Where updates of the program are published; empty when they are not.
  std::string updateFeedURL = {};
  /// PEM file of the key that the publisher of updates signs with.
  std::filesystem::path updatePublicKey = {};
  /// Between two looks for updates.
  std::chrono::seconds updateInterval = std::chrono::hours(24);
  /// What updates this installation in the user's place, such as "APT"; empty when nothing does.
  std::string packageManager = {};
  /// Folder of the speech engine and its models.
  std::filesystem::path modelsFolder = {};

  /// The values that the build was made with.
  static Deployment builtIn();

  /// The built-in values with those of `file` in place of theirs. Throws DeploymentError.
  static Deployment fromFile(std::filesystem::path const& file);
};

/// A deployment file that cannot be read, or says what no deployment can mean.
class DeploymentError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The deployment of this process, found at the first call. Throws DeploymentError for as long
/// as its file is bad.
[[nodiscard]] Deployment deployment();

/// Sets the deployment of this process, for tests. Objects already built keep what they read.
void setDeployment(Deployment deployment);

}  // namespace vek
