#pragma once

// The process's ODBC environment and its connection handles.

#include <sql.h>

#include "infra/odbc/handles.h"

namespace qdr::odbc {

// The one environment every connection of the process is allocated from:
// ODBC 3 behaviour, connection pooling requested (one pool per driver). It
// is created on first use and kept for the life of the process, so the
// driver manager's pool outlives the connections that feed it. Whether
// connections are actually pooled is the driver manager's decision:
// unixODBC pools only when its odbcinst.ini says "[ODBC] Pooling=Yes".
// Raises DatabaseError when the environment cannot be created (a later call
// tries again).
SQLHENV shared_environment();

// A connection handle of the shared environment, not connected: one kept
// from earlier use when there is one, else a new one. Raises DatabaseError
// when none can be allocated.
//
// Handles are kept rather than freed because unixODBC 2.3.11, when it
// pools, loses the character-set converters of every connection handle it
// frees (some 65 KB each): allocating one per connection would leak on
// every call.
ConnectionHandle take_connection_handle();

// Gives back a handle taken above, which must be disconnected. Up to a few
// dozen are kept for reuse; the rest are freed.
void keep_connection_handle(ConnectionHandle handle) noexcept;

}  // namespace qdr::odbc
