#include "infra/odbc/environment.h"

#include <sqlext.h>

#include <cstdint>
#include <mutex>
#include <vector>

namespace qdr::odbc {

namespace {

// More than the connections one call ever holds open at once, fewer than
// would matter if a burst of threads left them all here.
constexpr std::size_t kKeptHandles = 32;

EnvironmentHandle* create() {
  // Process-wide attribute: it must be set before the first environment.
  SQLSetEnvAttr(SQL_NULL_HENV, SQL_ATTR_CONNECTION_POOLING,
                reinterpret_cast<SQLPOINTER>(static_cast<uintptr_t>(SQL_CP_ONE_PER_DRIVER)),
                SQL_IS_UINTEGER);
  auto env = EnvironmentHandle::allocate<SQL_HANDLE_ENV>(SQL_NULL_HANDLE);
  check(SQLSetEnvAttr(env.get(), SQL_ATTR_ODBC_VERSION,
                      reinterpret_cast<SQLPOINTER>(static_cast<uintptr_t>(SQL_OV_ODBC3)),
                      SQL_IS_UINTEGER),
        env, "SQLSetEnvAttr");
  // Never freed: freeing the environment at exit would tear down the pool
  // while other static destructors may still be closing connections.
  return new EnvironmentHandle(std::move(env));
}

struct KeptHandles {
  // Reserved up front so that keeping a handle never allocates.
  KeptHandles() { handles.reserve(kKeptHandles); }
  std::mutex mutex;
  std::vector<ConnectionHandle> handles;
};

KeptHandles& kept() {
  // Never destroyed, like the environment the handles belong to.
  static auto* instance = new KeptHandles;
  return *instance;
}

}  // namespace

SQLHENV shared_environment() {
  // A throwing initialiser leaves the static unset, so a failure is retried.
  static EnvironmentHandle* env = create();
  return env->get();
}

ConnectionHandle take_connection_handle() {
  const SQLHENV env = shared_environment();
  {
    auto& k = kept();
    std::lock_guard lock(k.mutex);
    if (!k.handles.empty()) {
      ConnectionHandle handle = std::move(k.handles.back());
      k.handles.pop_back();
      return handle;
    }
  }
  return ConnectionHandle::allocate<SQL_HANDLE_ENV>(env);
}

void keep_connection_handle(ConnectionHandle handle) noexcept {
  if (!handle) return;
  auto& k = kept();
  std::lock_guard lock(k.mutex);
  if (k.handles.size() < kKeptHandles) k.handles.push_back(std::move(handle));
}

}  // namespace qdr::odbc
