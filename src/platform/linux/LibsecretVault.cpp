#include "platform/linux/LibsecretVault.h"

#include <QStringDecoder>

#include <libsecret/secret.h>
#include <optional>
#include <utility>

namespace morvo {
namespace {

constexpr auto serviceAttribute = "service";
constexpr auto accountAttribute = "account";
/// The attribute under which libsecret keeps a schema's name.
constexpr auto schemaAttribute = "xdg:schema";
constexpr auto schemaName = "ai.zentaro.morvobar.Secret";
constexpr auto plainText = "text/plain";

struct Unref {
  void operator()(void *object) const { g_object_unref(object); }
};
template <typename T> using Ref = std::unique_ptr<T, Unref>;

struct TableUnref {
  void operator()(GHashTable *table) const { g_hash_table_unref(table); }
};
using Table = std::unique_ptr<GHashTable, TableUnref>;

struct ValueUnref {
  void operator()(SecretValue *value) const { secret_value_unref(value); }
};
using Value = std::unique_ptr<SecretValue, ValueUnref>;

struct ItemsUnref {
  void operator()(GList *items) const { g_list_free_full(items, g_object_unref); }
};
using Items = std::unique_ptr<GList, ItemsUnref>;

/// An out-parameter for GLib's errors. Their texts go nowhere: they may quote what was sent.
class Error {
public:
  Error() = default;
  Error(const Error &) = delete;
  Error &operator=(const Error &) = delete;
  ~Error() { g_clear_error(&m_error); }

  GError **out() { return &m_error; }
  [[nodiscard]] SecretVault::Failure failure() const {
    return g_error_matches(m_error, SECRET_ERROR, SECRET_ERROR_IS_LOCKED) != FALSE
               ? SecretVault::Failure::locked
               : SecretVault::Failure::refused;
  }

private:
  GError *m_error = nullptr;
};

Table newTable() { return Table(g_hash_table_new_full(g_str_hash, g_str_equal, g_free, g_free)); }

void put(const Table &table, const char *name, const QByteArray &value) {
  g_hash_table_insert(table.get(), g_strdup(name), g_strdup(value.constData()));
}

Table attributesOf(const SecretKey &key) {
  Table table = newTable();
  put(table, schemaAttribute, schemaName);
  put(table, serviceAttribute, key.service.toUtf8());
  put(table, accountAttribute, key.account.toUtf8());
  return table;
}

std::optional<QString> decoded(const QByteArray &bytes) {
  QStringDecoder decoder(QStringDecoder::Utf8);
  const QString text = decoder(bytes);
  return decoder.hasError() ? std::nullopt : std::optional(text);
}

std::optional<QString> attribute(const Table &attributes, const char *name) {
  const auto *value = static_cast<const char *>(g_hash_table_lookup(attributes.get(), name));
  return value == nullptr ? std::nullopt : decoded(value);
}

std::optional<QString> secretOf(SecretItem *item) {
  const Value value(secret_item_get_secret(item));
  if (!value) {
    return std::nullopt;
  }
  gsize length = 0;
  const gchar *bytes = secret_value_get(value.get(), &length);
  return decoded(QByteArray(bytes, static_cast<qsizetype>(length)));
}

} // namespace

/// The connection to the service, with the events of its objects on this thread's own context: on
/// the default one the main thread would touch them meanwhile.
class LibsecretVault::Session {
public:
  Session() : m_context(g_main_context_new()) {}
  Session(const Session &) = delete;
  Session &operator=(const Session &) = delete;
  ~Session() {
    g_main_context_push_thread_default(m_context);
    close();
    // What the service's objects held is given up by events of this context.
    handleEvents();
    g_main_context_pop_thread_default(m_context);
    g_main_context_unref(m_context);
  }

  /// Calls `work(service)` with the service; its answer, or what hindered it.
  template <typename Work> auto with(const Work &work) -> decltype(work(nullptr)) {
    g_main_context_push_thread_default(m_context);
    handleEvents();
    auto result = open() ? work(m_service.get()) : std::unexpected(Failure::unreachable);
    if (!result && result.error() != Failure::locked) {
      // A service that was started anew knows nothing of the old session.
      close();
    }
    g_main_context_pop_thread_default(m_context);
    return result;
  }

private:
  /// Those that have come up to now.
  void handleEvents() {
    while (g_main_context_iteration(m_context, FALSE) != FALSE) {
    }
  }

  bool open() {
    if (m_service) {
      return true;
    }
    m_bus.reset(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
    if (!m_bus || g_dbus_connection_is_closed(m_bus.get()) != FALSE) {
      return false;
    }
    // GLib would end the process with the bus.
    g_dbus_connection_set_exit_on_close(m_bus.get(), FALSE);
    m_service.reset(secret_service_get_sync(SECRET_SERVICE_OPEN_SESSION, nullptr, nullptr));
    if (!m_service) {
      close();
    }
    return m_service != nullptr;
  }

  void close() {
    m_service.reset();
    secret_service_disconnect();
    m_bus.reset();
  }

  GMainContext *m_context;
  Ref<GDBusConnection> m_bus;
  Ref<::SecretService> m_service;
};

LibsecretVault::LibsecretVault() : m_session(std::make_unique<Session>()) {}
LibsecretVault::~LibsecretVault() = default;

std::expected<SecretVault::Secrets, SecretVault::Failure> LibsecretVault::load() {
  return m_session->with([](::SecretService *service) -> std::expected<Secrets, Failure> {
    const Table ours = newTable();
    put(ours, schemaAttribute, schemaName);
    Error error;
    const Items items(secret_service_search_sync(service, nullptr, ours.get(), SECRET_SEARCH_ALL,
                                                 nullptr, error.out()));
    if (*error.out() != nullptr) {
      return std::unexpected(error.failure());
    }
    // Locked items stay without their secret.
    if (secret_item_load_secrets_sync(items.get(), nullptr, error.out()) == FALSE) {
      return std::unexpected(error.failure());
    }
    Secrets secrets;
    std::map<SecretKey, guint64> modified;
    for (const GList *each = items.get(); each != nullptr; each = each->next) {
      auto *item = static_cast<SecretItem *>(each->data);
      const Table attributes(secret_item_get_attributes(item));
      const auto serviceName = attribute(attributes, serviceAttribute);
      const auto account = attribute(attributes, accountAttribute);
      const auto secret = secretOf(item);
      if (!serviceName || !account || !secret) {
        continue;
      }
      // The same secret may stand in two collections; the later one counts.
      const SecretKey key{*serviceName, *account};
      const guint64 time = secret_item_get_modified(item);
      if (!secrets.contains(key) || modified[key] <= time) {
        secrets.insert_or_assign(key, *secret);
        modified[key] = time;
      }
    }
    return secrets;
  });
}

std::expected<void, SecretVault::Failure> LibsecretVault::store(const SecretKey &key,
                                                                const QString &value) {
  return m_session->with([&](::SecretService *service) -> std::expected<void, Failure> {
    Error error;
    const Ref<SecretCollection> collection(secret_collection_for_alias_sync(
        service, SECRET_COLLECTION_DEFAULT, SECRET_COLLECTION_NONE, nullptr, error.out()));
    if (*error.out() != nullptr) {
      return std::unexpected(error.failure());
    }
    if (!collection || secret_collection_get_locked(collection.get()) != FALSE) {
      return std::unexpected(Failure::locked);
    }
    const QByteArray bytes = value.toUtf8();
    const Value secret(
        secret_value_new(bytes.constData(), static_cast<gssize>(bytes.size()), plainText));
    const QByteArray label = "MorvoBar: " + key.service.toUtf8() + " / " + key.account.toUtf8();
    const bool stored = secret_service_store_sync(service, nullptr, attributesOf(key).get(),
                                                  SECRET_COLLECTION_DEFAULT, label.constData(),
                                                  secret.get(), nullptr, error.out()) != FALSE;
    return stored ? std::expected<void, Failure>() : std::unexpected(error.failure());
  });
}

std::expected<void, SecretVault::Failure> LibsecretVault::erase(const SecretKey &key) {
  return m_session->with([&](::SecretService *service) -> std::expected<void, Failure> {
    Error error;
    const Items items(secret_service_search_sync(service, nullptr, attributesOf(key).get(),
                                                 SECRET_SEARCH_ALL, nullptr, error.out()));
    std::expected<void, Failure> result;
    if (*error.out() != nullptr) {
      result = std::unexpected(error.failure());
    }
    for (const GList *each = items.get(); result && each != nullptr; each = each->next) {
      auto *item = static_cast<SecretItem *>(each->data);
      if (secret_item_get_locked(item) != FALSE) {
        result = std::unexpected(Failure::locked);
      } else if (secret_item_delete_sync(item, nullptr, error.out()) == FALSE) {
        result = std::unexpected(error.failure());
      }
    }
    return result;
  });
}

} // namespace morvo
