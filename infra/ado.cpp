#include "infra/ado.h"

#include "infra/ascii.h"
#include "infra/backend_registry.h"
#include "infra/sql_text.h"
#include "qdr/error.h"

namespace qdr::ado {

namespace {

[[noreturn]] void raise(int32_t number) {
  switch (number) {
    case adErrObjectClosed:
      throw Error(number, "Operation is not allowed when the object is closed.");
    case adErrObjectOpen:
      throw Error(number, "Operation is not allowed when the object is open.");
    case adErrNoCurrentRecord:
      throw Error(number,
                  "Either BOF or EOF is True, or the current record has been deleted. Requested "
                  "operation requires a current record.");
    case adErrItemNotFound:
      throw Error(number,
                  "Item cannot be found in the collection corresponding to the requested name or "
                  "ordinal.");
    default:
      throw Error(adErrInvalidConnection,
                  "The connection cannot be used to perform this operation. It is either closed "
                  "or invalid in this context.");
  }
}

std::string with_credentials(const std::string& connection_string, const std::string& user_id,
                             const std::string& password) {
  if (user_id.empty() && password.empty()) return connection_string;
  const bool oledb = parse_connection_string(connection_string).count("provider") > 0;
  std::string out = connection_string;
  if (!out.empty() && out.back() != ';') out += ';';
  if (!user_id.empty()) out += (oledb ? "User ID=" : "UID=") + user_id + ";";
  if (!password.empty()) out += (oledb ? "Password=" : "PWD=") + password + ";";
  return out;
}

}  // namespace

// --- Connection ---------------------------------------------------------------

Connection::Connection() = default;
Connection::~Connection() = default;

void Connection::Open(const std::string& connection_string, const std::string& user_id,
                      const std::string& password, int /*options*/) {
  if (session_) raise(adErrObjectOpen);
  if (!connection_string.empty()) ConnectionString = connection_string;
  session_ = open_session(with_credentials(ConnectionString, user_id, password));
}

int Connection::State() const { return session_ ? adStateOpen : adStateClosed; }

void Connection::Close() { session_.reset(); }

Session& Connection::session() {
  if (!session_) raise(adErrObjectClosed);
  return *session_;
}

// --- Command ------------------------------------------------------------------

Command::Command() = default;
Command::~Command() = default;

std::string Command::CommandText() const {
  if (CommandType == adCmdStoredProc)
    return sql_text::call_form(text_, static_cast<std::size_t>(parameters_.Count()));
  return text_;
}

AdoParameter Command::CreateParameter(std::string name, int type, int direction, int size,
                                      Variant value) const {
  return AdoParameter{std::move(name), type, direction, size, std::move(value)};
}

AdoParameter& Command::ParameterList::Item(int32_t index) {
  if (index < 0 || index >= Count()) raise(adErrItemNotFound);
  return items_[static_cast<std::size_t>(index)];
}

const AdoParameter& Command::ParameterList::Item(int32_t index) const {
  if (index < 0 || index >= Count()) raise(adErrItemNotFound);
  return items_[static_cast<std::size_t>(index)];
}

Recordset Command::Execute() {
  if (connection_ == nullptr || connection_->State() != adStateOpen) raise(adErrInvalidConnection);
  Statement statement;
  if (CommandType == adCmdStoredProc) {
    std::vector<Parameter> parameters;
    for (int32_t i = 0; i < parameters_.Count(); ++i) {
      const auto& p = parameters_.Item(i);
      parameters.push_back({p.Name, p.Type, p.Size, p.Value});
    }
    statement = sql_text::parse_command(text_, std::move(parameters));
  } else {
    statement = sql_text::parse_text(text_);
  }
  statement.timeout = CommandTimeout;
  Recordset recordset;
  recordset.CursorLocation = adUseClient;
  recordset.attach(connection_->session().execute(statement));
  return recordset;
}

// --- Recordset ----------------------------------------------------------------

Recordset::Recordset() = default;
Recordset::~Recordset() = default;
Recordset::Recordset(Recordset&&) noexcept = default;
Recordset& Recordset::operator=(Recordset&&) noexcept = default;

void Recordset::Open(const std::string& source, const std::string& active_connection,
                     int /*cursor_type*/, int /*lock_type*/, int /*options*/) {
  if (result_) raise(adErrObjectOpen);
  // Parsed before connecting: a refused text costs no connection.
  Statement statement = sql_text::parse_text(source);
  statement.timeout = kRecordsetTimeoutSeconds;
  Connection connection;
  connection.Open(active_connection);
  // Every row is read before the connection goes back to the pool.
  attach(connection.session().execute(statement));
}

void Recordset::Open(const std::string& source, Connection& active_connection, int /*cursor_type*/,
                     int /*lock_type*/, int /*options*/) {
  if (result_) raise(adErrObjectOpen);
  if (active_connection.State() != adStateOpen) raise(adErrInvalidConnection);
  Statement statement = sql_text::parse_text(source);
  statement.timeout = kRecordsetTimeoutSeconds;
  attach(active_connection.session().execute(statement));
}

int Recordset::State() const { return result_ ? adStateOpen : adStateClosed; }

bool Recordset::Eof() const {
  if (!result_) raise(adErrObjectClosed);
  return row_ >= result_->rows.size();
}

bool Recordset::Bof() const {
  if (!result_) raise(adErrObjectClosed);
  return result_->rows.empty();
}

void Recordset::MoveFirst() {
  if (!result_) raise(adErrObjectClosed);
  if (result_->rows.empty()) raise(adErrNoCurrentRecord);
  row_ = 0;
}

void Recordset::MoveLast() {
  if (!result_) raise(adErrObjectClosed);
  if (result_->rows.empty()) raise(adErrNoCurrentRecord);
  row_ = result_->rows.size() - 1;
}

void Recordset::MoveNext() {
  if (!result_) raise(adErrObjectClosed);
  if (row_ >= result_->rows.size()) raise(adErrNoCurrentRecord);
  ++row_;
}

int32_t Recordset::RecordCount() const {
  if (!result_) raise(adErrObjectClosed);
  return static_cast<int32_t>(result_->rows.size());
}

const Variant& Recordset::Fields(std::string_view name) const {
  if (!result_) raise(adErrObjectClosed);
  const auto& columns = result_->columns;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (!ascii::iequals(columns[i], name)) continue;
    if (row_ >= result_->rows.size()) raise(adErrNoCurrentRecord);
    const auto& row = result_->rows[row_];
    if (i < row.size()) return row[i];
    // A short row from a scripted source reads as Null rather than past its end.
    static const Variant missing = Variant::null();
    return missing;
  }
  raise(adErrItemNotFound);
}

bool Recordset::HasField(std::string_view name) const {
  if (!result_) raise(adErrObjectClosed);
  for (const auto& column : result_->columns)
    if (ascii::iequals(column, name)) return true;
  return false;
}

void Recordset::Close() {
  if (!result_) raise(adErrObjectClosed);
  result_.reset();
  row_ = 0;
  own_connection_.reset();
}

void Recordset::attach(std::optional<ResultSet> result) {
  result_ = std::move(result);
  row_ = 0;
}

}  // namespace qdr::ado
