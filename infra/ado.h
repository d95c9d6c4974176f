#pragma once

// The data-access objects the routines use: Connection, Command and a
// client-side static Recordset, with the members the legacy routines call.
// Each object owns what it opens and releases it in its destructor, so an
// error path never leaks a handle.
//
// Every statement passes through the statement parser first: only a single
// call (EXEC/EXECUTE or a command's procedure) or one of the component's
// plain statements is sent, with its literals bound as parameters. Anything
// else fails with qdr::DatabaseError before it reaches the data source.
//
// Errors are qdr::Error (ADO's own numbers, e.g. 3704 for an operation on a
// closed object, 3021 for reading past the end, 3265 for an unknown field)
// or qdr::DatabaseError (from the data source).

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "qdr/backend.h"
#include "qdr/variant.h"

namespace qdr::ado {

// Cursor locations, cursor and lock types, command types, object states.
inline constexpr int adUseServer = 2;
inline constexpr int adUseClient = 3;
inline constexpr int adOpenStatic = 3;
inline constexpr int adLockReadOnly = 1;
inline constexpr int adCmdText = 1;
inline constexpr int adCmdStoredProc = 4;
inline constexpr int adStateClosed = 0;
inline constexpr int adStateOpen = 1;
inline constexpr int adParamInput = 1;

// Parameter types.
inline constexpr int adInteger = 3;
inline constexpr int adDouble = 5;
inline constexpr int adCurrency = 6;
inline constexpr int adDate = 7;
inline constexpr int adChar = 129;
inline constexpr int adWChar = 130;
inline constexpr int adDBTimeStamp = 135;
inline constexpr int adVarChar = 200;
inline constexpr int adLongVarChar = 201;
inline constexpr int adVarWChar = 202;
inline constexpr int adLongVarWChar = 203;

// The limit on a recordset's statement, in seconds (commands use their own
// CommandTimeout). Pooled connections are kept with it already in force.
inline constexpr int kRecordsetTimeoutSeconds = 30;

// ADO's own error numbers.
inline constexpr int32_t adErrItemNotFound = 3265;
inline constexpr int32_t adErrNoCurrentRecord = 3021;
inline constexpr int32_t adErrObjectClosed = 3704;
inline constexpr int32_t adErrObjectOpen = 3705;
inline constexpr int32_t adErrInvalidConnection = 3709;

class Connection {
 public:
  Connection();
  ~Connection();
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  std::string ConnectionString;
  int CursorLocation = adUseServer;

  // Opens the data source named by `connection_string`, or by
  // ConnectionString when that argument is empty. Raises DatabaseError when
  // the source cannot be reached or the provider is unknown.
  void Open(const std::string& connection_string = {}, const std::string& user_id = {},
            const std::string& password = {}, int options = -1);
  int State() const;  // adStateOpen or adStateClosed
  void Close();       // returns the connection to the pool; harmless when closed

  // The open session (raises 3704 when closed).
  Session& session();

 private:
  std::unique_ptr<Session> session_;
};

struct AdoParameter {
  std::string Name;
  int Type = 0;
  int Direction = adParamInput;
  int Size = 0;
  Variant Value;
};

class Recordset;

class Command {
 public:
  Command();
  ~Command();

  // The connection the command runs on; it must outlive Execute().
  void ActiveConnection(Connection& connection) { connection_ = &connection; }

  // For a stored-procedure command this reads back in the call form the
  // platform builds: "{ call NAME(?, ?) }" ("{ call NAME }" without
  // parameters).
  std::string CommandText() const;
  void CommandText(std::string text) { text_ = std::move(text); }

  int CommandType = adCmdText;
  int CommandTimeout = 30;

  AdoParameter CreateParameter(std::string name, int type, int direction, int size,
                               Variant value) const;
  // Parameters collection: Append, Count, Item.
  class ParameterList {
   public:
    void Append(AdoParameter parameter) { items_.push_back(std::move(parameter)); }
    int32_t Count() const { return static_cast<int32_t>(items_.size()); }
    AdoParameter& Item(int32_t index);
    const AdoParameter& Item(int32_t index) const;

   private:
    std::vector<AdoParameter> items_;
  };
  ParameterList& Parameters() { return parameters_; }
  const ParameterList& Parameters() const { return parameters_; }

  // Runs the command on its active connection. The recordset is open when
  // the statement produced a result set and closed (State 0) otherwise.
  Recordset Execute();

 private:
  Connection* connection_ = nullptr;
  std::string text_;
  ParameterList parameters_;
};

class Recordset {
 public:
  Recordset();
  ~Recordset();
  Recordset(Recordset&&) noexcept;
  Recordset& operator=(Recordset&&) noexcept;

  int CursorLocation = adUseServer;

  // Runs `source` on a connection opened for the purpose from
  // `active_connection` (a connection string), or on an open Connection.
  // Cursor type, lock type and options are accepted as the routines pass
  // them; the cursor is always a client-side static one. A statement that
  // produces no result set leaves the recordset closed.
  void Open(const std::string& source, const std::string& active_connection, int cursor_type = -1,
            int lock_type = -1, int options = -1);
  void Open(const std::string& source, Connection& active_connection, int cursor_type = -1,
            int lock_type = -1, int options = -1);

  int State() const;
  bool Eof() const;  // raises 3704 when closed
  bool Bof() const;  // raises 3704 when closed
  void MoveFirst();
  void MoveLast();
  void MoveNext();              // raises 3021 past the end
  int32_t RecordCount() const;  // exact; raises 3704 when closed

  // The current row's value of the column, found without regard to case.
  // Raises 3265 for an unknown column, 3021 with no current row.
  const Variant& Fields(std::string_view name) const;
  bool HasField(std::string_view name) const;

  void Close();  // raises 3704 when already closed

  // Opens directly on a result (used by Command::Execute).
  void attach(std::optional<ResultSet> result);

 private:
  std::optional<ResultSet> result_;
  std::size_t row_ = 0;
  std::unique_ptr<Connection> own_connection_;
};

}  // namespace qdr::ado
