// SPDX-License-Identifier: MIT
#include "platform/SecretServiceSession.hpp"

#include <libsecret/secret.h>

#include <memory>
#include <utility>

#include "platform/GLibError.hpp"
#include "platform/KeychainStatus.hpp"

namespace vek {
namespace {

template <auto Free>
struct FreedBy {
  template <class T>
  void operator()(T* value) const {
    Free(value);
  }
};
using Attributes = std::unique_ptr<GHashTable, FreedBy<g_hash_table_unref>>;
using Text = std::unique_ptr<char, FreedBy<g_free>>;
using Value = std::unique_ptr<SecretValue, FreedBy<secret_value_unref>>;

/// By what an item is found, and not by the schema's name: GNOME's service forgets that of a
/// keyring which is still locked, so that its items could not be found and no user be asked.
SecretSchema const& schema() {
  static SecretSchema const instance = [] {
    SecretSchema made{};
    made.name = "com.vek.app.Keychain";
    made.flags = SECRET_SCHEMA_DONT_MATCH_NAME;
    made.attributes[0] = {"service", SECRET_SCHEMA_ATTRIBUTE_STRING};
    made.attributes[1] = {"account", SECRET_SCHEMA_ATTRIBUTE_STRING};
    return made;
  }();
  return instance;
}

Attributes attributesOf(std::string const& service, std::optional<std::string> const& account) {
  return Attributes(secret_attributes_build(&schema(), "service", service.c_str(),
                                            account ? "account" : nullptr,
                                            account ? account->c_str() : nullptr, nullptr));
}

}  // namespace

/// What a search has found.
class SecretServiceSession::Items {
 public:
  explicit Items(GList* list) : list_(list) {}
  Items(Items&& other) noexcept : list_(std::exchange(other.list_, nullptr)) {}
  Items& operator=(Items&&) = delete;
  ~Items() { g_list_free_full(list_, g_object_unref); }

  template <class Visit>
  void forEach(Visit visit) const {
    for (GList const* at = list_; at; at = at->next) visit(static_cast<SecretItem*>(at->data));
  }

  /// Throws errSecItemNotFound.
  [[nodiscard]] SecretItem* first() const {
    if (isEmpty()) throw KeychainFailure{errSecItemNotFound};
    return static_cast<SecretItem*>(list_->data);
  }
  [[nodiscard]] bool isEmpty() const { return list_ == nullptr; }

 private:
  GList* list_;
};

SecretServiceSession::SecretServiceSession(GCancellable* cancellable) : cancellable_(cancellable) {
  GLibError error;
  service_ = secret_service_open_sync(SECRET_TYPE_SERVICE, nullptr, SECRET_SERVICE_OPEN_SESSION,
                                      cancellable_, error.place());
  error.throwAsKeychainFailure();
}

SecretServiceSession::~SecretServiceSession() {
  g_object_unref(service_);
}

SecretServiceSession::Items SecretServiceSession::find(std::string const& service,
                                                       std::optional<std::string> const& account) {
  GLibError error;
  Items items(secret_service_search_sync(service_, &schema(), attributesOf(service, account).get(),
                                         SECRET_SEARCH_ALL, cancellable_, error.place()));
  error.throwAsKeychainFailure();
  return items;
}

/// Has the user asked to open an item's keyring, unless it is open. A locked one without this looks
/// like an empty one.
void SecretServiceSession::unlock(SecretItem* item) {
  if (!secret_item_get_locked(item)) return;
  GList one{.data = item, .next = nullptr, .prev = nullptr};
  GLibError error;
  int const unlocked =
      secret_service_unlock_sync(service_, &one, cancellable_, nullptr, error.place());
  if (unlocked <= 0) throw KeychainFailure{errSecInteractionNotAllowed};
}

void SecretServiceSession::store(KeychainStore::Key const& key, std::string const& bytes,
                                 char const* collection) {
  Value const value(secret_value_new(bytes.data(), static_cast<gssize>(bytes.size()),
                                     "application/octet-stream"));
  std::string const label = key.service + " (" + key.account + ")";
  GLibError error;
  secret_service_store_sync(service_, &schema(), attributesOf(key.service, key.account).get(),
                            collection, label.c_str(), value.get(), cancellable_, error.place());
  error.throwAsKeychainFailure();
}

void SecretServiceSession::add(KeychainStore::Key const& key, std::string const& bytes) {
  if (!find(key.service, key.account).isEmpty()) throw KeychainFailure{errSecDuplicateItem};
  store(key, bytes, SECRET_COLLECTION_DEFAULT);
}

void SecretServiceSession::replace(KeychainStore::Key const& key, std::string const& bytes) {
  Items const items = find(key.service, key.account);
  unlock(items.first());
  // Stored anew in the collection that it is in: services replace it in one step, and tell the
  // others of it, which the one of GNOME does not when an item's secret is set.
  Text const collection(
      g_path_get_dirname(g_dbus_proxy_get_object_path(G_DBUS_PROXY(items.first()))));
  store(key, bytes, collection.get());
}

std::string SecretServiceSession::read(KeychainStore::Key const& key) {
  Items const items = find(key.service, key.account);
  unlock(items.first());
  GLibError error;
  secret_item_load_secret_sync(items.first(), cancellable_, error.place());
  error.throwAsKeychainFailure();
  Value const value(secret_item_get_secret(items.first()));
  if (!value) throw KeychainFailure{errSecInteractionNotAllowed};
  gsize length = 0;
  char const* const bytes = secret_value_get(value.get(), &length);
  return {bytes, length};
}

void SecretServiceSession::remove(std::string const& service,
                                  std::optional<std::string> const& account) {
  Items const items = find(service, account);
  static_cast<void>(items.first());
  items.forEach([this](SecretItem* item) {
    unlock(item);
    GLibError error;
    secret_item_delete_sync(item, cancellable_, error.place());
    error.throwAsKeychainFailure();
  });
}

std::vector<std::string> SecretServiceSession::list(std::string const& service) {
  Items const items = find(service, std::nullopt);
  static_cast<void>(items.first());
  std::vector<std::string> accounts;
  items.forEach([&accounts](SecretItem* item) {
    Attributes const attributes(secret_item_get_attributes(item));
    auto const* account = g_hash_table_lookup(attributes.get(), "account");
    if (account) accounts.emplace_back(static_cast<char const*>(account));
  });
  return accounts;
}

}  // namespace vek
