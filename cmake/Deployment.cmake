# SPDX-License-Identifier: MIT
# Values of one deployment, fixed at build time. The defaults point at the local services.

set(VEK_BACKEND_URL "https://localhost:8443" CACHE STRING "Scheme, host and port of the backend")
set(VEK_RECOGNISER_URL "wss://localhost:8443" CACHE STRING
  "Scheme, host and port of the hosted recogniser")
set(VEK_RECOGNISER_KEY "0f1e2d3c4b5a69788796a5b4c3d2e1f00f1e2d3c" CACHE STRING
  "What the hosted recogniser knows the product by")
set(VEK_AUTH_CONFIGURATION "~/.local/share/vek-services/Auth0.plist" CACHE STRING
  "Property list with the identity provider's Domain and the ClientId that it knows the program by")
set(VEK_AUDIENCE "https://api.vek.test" CACHE STRING
  "Identifier by which the identity provider knows the backend: an https URL without a path")
set(VEK_TRUSTED_AUTHORITY "~/.local/share/vek-services/authority.pem" CACHE STRING
  "PEM file of an authority trusted beside the system's; empty for none")
set(VEK_UPDATE_FEED_URL "https://localhost:8443/updates/feed.json" CACHE STRING
  "Where updates of the program are published; empty for nowhere")
set(VEK_UPDATE_PUBLIC_KEY "~/.local/share/vek-services/update-key.pem" CACHE STRING
  "PEM file of the Ed25519 key that the publisher of updates signs with")
set(VEK_UPDATE_INTERVAL 86400 CACHE STRING "Seconds between two looks for updates")
if(NOT VEK_UPDATE_INTERVAL MATCHES "^[1-9][0-9]*$")
  message(FATAL_ERROR "VEK_UPDATE_INTERVAL is no number of seconds: \"${VEK_UPDATE_INTERVAL}\"")
endif()
set(VEK_PACKAGE_MANAGER "" CACHE STRING
  "What updates the installation in the user's place, such as APT; empty for nothing")
set(VEK_MODELS_FOLDER "~/.local/share/vek/models" CACHE STRING
  "Folder of the speech engine and its models")
option(VEK_DEPLOYMENT_FROM_ENVIRONMENT
  "Let a file named by VEK_DEPLOYMENT_FILE override these values; off in packages" ON)
