#pragma once

// The Replay data source: answers statements from a script file instead of a
// database, and journals what it was asked. Tests and demonstrations use it
// to drive the routines through any path, failures included.
//
// Connection string: "Provider=Replay;Script=FILE;Journal=FILE". Script is
// required; Journal is optional (no journal without it).
//
// Script: a JSON list of responses, one per statement (each Session::execute,
// that is each recordset opened or command executed), used in order:
//   {"columns": ["A", "B"], "rows": [[1, "x"], [2, null]]}   a result set
//                                                (rows may be left out)
//   {"noResultSet": true}                        a statement without a result
//   {"error": "text", "number": N, "sqlstate": "42000"}
//       a failure: the statement raises DatabaseError(N, "text", sqlstate);
//       number defaults to -2147467259, sqlstate to ""
// Any response may carry "match": "PREFIX"; the statement's text (for a
// command, its call form "{ call NAME(?, ?) }") must then start with PREFIX
// (letter case ignored) or the statement fails. Row values use the JSON form
// of infra/json_variant.h (42 is a Long, 42.0 a Double,
// {"$type":"Currency","value":1.5}, ...). Unknown keys are rejected.
//
// Every statement takes the next response, even one that fails its match;
// a statement that finds no response left fails. All failures are
// DatabaseError; those of the data source itself (no script, a malformed
// script, a mismatch, no response left, an unwritable journal) carry number
// -2147467259 and a message naming the file. A missing or malformed script
// fails the connection's opening.
//
// Position: the place in a script is kept per script file for the whole
// process, so successive sessions on the same file (each routine opens a
// connection per statement) carry on where the previous one stopped. The
// file is read again on every statement; when its content differs from the
// last reading, the script starts again from its first response. A new
// process always starts from the first response.
//
// Journal: before answering, one JSON line per statement is appended (the
// file is opened, written and closed each time, so nothing is lost if the
// process dies; it is never truncated):
//   {"kind":"text"|"command","text":"...","procedure":"NAME"|null,
//    "parameters":[{"name":"...","type":3,"size":0,"value":...}]}
// with the fields of qdr::Statement and qdr::Parameter; values in the same
// JSON form as script rows.

namespace qdr {

// Starts every script from its first response again, as a new process
// would. For tests that replay an unchanged script file twice.
void reset_replay_scripts();

}  // namespace qdr
