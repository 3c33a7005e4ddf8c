// SPDX-License-Identifier: MIT
#include <gio/gio.h>

#include <memory>
#include <string_view>

#include "platform/MicrophoneRules.hpp"

namespace vek {

namespace {

template <auto release>
struct Releases {
  template <class T>
  void operator()(T* object) const {
    release(object);
  }
};

constexpr auto privacySchema = "org.gnome.desktop.privacy";
constexpr auto microphoneSwitch = "disable-microphone";

}  // namespace

bool isMicrophoneDeniedBySandbox(std::filesystem::path const& sandboxInfo) {
  std::unique_ptr<GKeyFile, Releases<g_key_file_unref>> const file(g_key_file_new());
  if (!g_key_file_load_from_file(file.get(), sandboxInfo.c_str(), G_KEY_FILE_NONE, nullptr)) {
    return false;
  }
  std::unique_ptr<gchar*, Releases<g_strfreev>> const sockets(
      g_key_file_get_string_list(file.get(), "Context", "sockets", nullptr, nullptr));
  return !sockets || !g_strv_contains(sockets.get(), "pulseaudio");
}

bool isMicrophoneDeniedByDesktop() {
  // To read settings whose schema or key is missing would end the process.
  auto* const source = g_settings_schema_source_get_default();
  if (!source) return false;
  std::unique_ptr<GSettingsSchema, Releases<g_settings_schema_unref>> const schema(
      g_settings_schema_source_lookup(source, privacySchema, TRUE));
  if (!schema || !g_settings_schema_has_key(schema.get(), microphoneSwitch)) return false;
  std::unique_ptr<GSettings, Releases<g_object_unref>> const settings(
      g_settings_new_full(schema.get(), nullptr, nullptr));
  return g_settings_get_boolean(settings.get(), microphoneSwitch) != FALSE;
}

}  // namespace vek
