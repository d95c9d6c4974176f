#include "infra/sql_text.h"

#include <charconv>
#include <limits>
#include <optional>
#include <system_error>

#include "infra/ascii.h"
#include "qdr/error.h"

namespace qdr::sql_text {

namespace {

[[noreturn]] void refuse(const std::string& reason) {
  throw DatabaseError(kRefusedNumber, "Statement refused: " + reason, kRefusedState);
}

bool is_name_start(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_'; }
bool is_name_char(char c) { return is_name_start(c) || (c >= '0' && c <= '9'); }
bool is_digit(char c) { return c >= '0' && c <= '9'; }
bool is_blank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

struct Token {
  enum class Kind { Word, Named, Number, Text, Comma, Open, Close, Equals, Dot, Sign, End };
  Kind kind;
  std::string value;  // the word, the name after "@", the number, the text unquoted, the sign
  std::size_t at;     // 1-based position in the statement, for messages
};

// The whole text is tokenised before any parsing, so that a comment, a
// semicolon or an open quote anywhere is reported as such, not as whatever
// the parser would have tripped over first.
std::vector<Token> tokenise(std::string_view text) {
  std::vector<Token> tokens;
  std::size_t i = 0;
  while (i < text.size()) {
    const char c = text[i];
    const std::size_t at = i + 1;
    if (is_blank(c)) {
      ++i;
    } else if (c == '-' && i + 1 < text.size() && text[i + 1] == '-') {
      refuse("a comment (\"--\") at character " + std::to_string(at));
    } else if (c == '/' && i + 1 < text.size() && text[i + 1] == '*') {
      refuse("a comment (\"/*\") at character " + std::to_string(at));
    } else if (c == ';') {
      refuse("more than one statement (\";\" at character " + std::to_string(at) + ")");
    } else if (c == '\'') {
      std::string value;
      std::size_t j = i + 1;
      for (;;) {
        if (j >= text.size()) refuse("unbalanced quote at character " + std::to_string(at));
        if (text[j] == '\'') {
          if (j + 1 < text.size() && text[j + 1] == '\'') {
            value += '\'';
            j += 2;
            continue;
          }
          break;
        }
        value += text[j++];
      }
      tokens.push_back({Token::Kind::Text, std::move(value), at});
      i = j + 1;
    } else if (is_name_start(c)) {
      std::size_t j = i;
      while (j < text.size() && is_name_char(text[j])) ++j;
      tokens.push_back({Token::Kind::Word, std::string(text.substr(i, j - i)), at});
      i = j;
    } else if (c == '@') {
      std::size_t j = i + 1;
      if (j >= text.size() || !is_name_start(text[j]))
        refuse("\"@\" without a plain name at character " + std::to_string(at));
      while (j < text.size() && is_name_char(text[j])) ++j;
      tokens.push_back({Token::Kind::Named, std::string(text.substr(i, j - i)), at});
      i = j;
    } else if (is_digit(c) || (c == '.' && i + 1 < text.size() && is_digit(text[i + 1]))) {
      std::size_t j = i;
      while (j < text.size() && is_digit(text[j])) ++j;
      if (j < text.size() && text[j] == '.') {
        ++j;
        while (j < text.size() && is_digit(text[j])) ++j;
      }
      if (j < text.size() && (text[j] == 'e' || text[j] == 'E')) {
        std::size_t k = j + 1;
        if (k < text.size() && (text[k] == '+' || text[k] == '-')) ++k;
        if (k < text.size() && is_digit(text[k])) {
          while (k < text.size() && is_digit(text[k])) ++k;
          j = k;
        }
      }
      tokens.push_back({Token::Kind::Number, std::string(text.substr(i, j - i)), at});
      i = j;
    } else if (c == ',') {
      tokens.push_back({Token::Kind::Comma, ",", at});
      ++i;
    } else if (c == '(') {
      tokens.push_back({Token::Kind::Open, "(", at});
      ++i;
    } else if (c == ')') {
      tokens.push_back({Token::Kind::Close, ")", at});
      ++i;
    } else if (c == '=') {
      tokens.push_back({Token::Kind::Equals, "=", at});
      ++i;
    } else if (c == '.') {
      tokens.push_back({Token::Kind::Dot, ".", at});
      ++i;
    } else if (c == '-' || c == '+') {
      tokens.push_back({Token::Kind::Sign, std::string(1, c), at});
      ++i;
    } else {
      std::string shown = (static_cast<unsigned char>(c) < 0x20 || c == 0x7f)
                              ? "a control character"
                              : "\"" + std::string(1, c) + "\"";
      refuse("unexpected " + shown + " at character " + std::to_string(at));
    }
  }
  tokens.push_back({Token::Kind::End, "", text.size() + 1});
  return tokens;
}

std::string describe(const Token& token) {
  switch (token.kind) {
    case Token::Kind::End:
      return "the end of the statement";
    case Token::Kind::Text:
      return "a quoted text at character " + std::to_string(token.at);
    default:
      return "\"" + token.value + "\" at character " + std::to_string(token.at);
  }
}

Parameter number_parameter(const std::string& sign, const std::string& digits) {
  const std::string text = (sign == "-" ? "-" : "") + digits;
  const bool integral = digits.find_first_of(".eE") == std::string::npos;
  if (integral) {
    int64_t whole = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), whole);
    if (error == std::errc() && end == text.data() + text.size() &&
        whole >= std::numeric_limits<int32_t>::min() &&
        whole <= std::numeric_limits<int32_t>::max())
      return {"", 3, 0, Variant(static_cast<int32_t>(whole))};
  }
  double value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size())
    refuse("the number " + text + " is out of range");
  return {"", 5, 0, Variant(value)};
}

class Parser {
 public:
  explicit Parser(std::vector<Token> tokens) : tokens_(std::move(tokens)) {}

  const Token& peek() const { return tokens_[pos_]; }
  const Token& next() { return tokens_[pos_ < tokens_.size() - 1 ? pos_++ : pos_]; }

  bool at_word(std::string_view word) const {
    return peek().kind == Token::Kind::Word && ascii::iequals(peek().value, word);
  }
  void expect_word(std::string_view word) {
    if (!at_word(word)) refuse("expected " + std::string(word) + " but found " + describe(peek()));
    next();
  }
  void expect(Token::Kind kind, std::string_view shown) {
    if (peek().kind != kind)
      refuse("expected \"" + std::string(shown) + "\" but found " + describe(peek()));
    next();
  }
  void expect_end() {
    if (peek().kind != Token::Kind::End) refuse("unexpected " + describe(peek()));
  }

  // A plain name, optionally "schema.name" when `qualified` is allowed.
  std::string name(bool qualified, std::string_view what) {
    if (peek().kind != Token::Kind::Word)
      refuse("expected " + std::string(what) + " but found " + describe(peek()));
    std::string result = next().value;
    if (qualified && peek().kind == Token::Kind::Dot) {
      next();
      if (peek().kind != Token::Kind::Word)
        refuse(std::string(what) + " \"" + result + ".\" is not a plain name");
      result += "." + next().value;
    }
    return result;
  }

  // A number, a quoted text or null.
  std::optional<Parameter> literal() {
    const Token& token = peek();
    if (token.kind == Token::Kind::Number) {
      return number_parameter("", next().value);
    }
    if (token.kind == Token::Kind::Sign) {
      const std::string sign = next().value;
      if (peek().kind != Token::Kind::Number)
        refuse("expected a number after \"" + sign + "\" but found " + describe(peek()));
      return number_parameter(sign, next().value);
    }
    if (token.kind == Token::Kind::Text) {
      std::string value = next().value;
      const int size = static_cast<int>(value.size());
      return Parameter{"", 200, size, Variant(std::move(value))};
    }
    if (token.kind == Token::Kind::Word && ascii::iequals(token.value, "null")) {
      next();
      return Parameter{"", 0, 0, Variant::null()};
    }
    return std::nullopt;
  }

  Parameter required_literal(const std::string& where) {
    if (auto parameter = literal()) return *parameter;
    refuse("expected a number, a quoted text or null " + where + " but found " + describe(peek()));
  }

 private:
  std::vector<Token> tokens_;
  std::size_t pos_ = 0;
};

void parse_call(Parser& parser, Statement& statement) {
  parser.next();  // EXEC or EXECUTE
  statement.procedure = parser.name(true, "a procedure name");
  if (parser.peek().kind == Token::Kind::End) return;
  bool named = false;
  for (std::size_t index = 1;; ++index) {
    const std::string where = "as argument " + std::to_string(index);
    if (parser.peek().kind == Token::Kind::Named) {
      std::string label = parser.next().value;
      parser.expect(Token::Kind::Equals, "=");
      Parameter parameter = parser.required_literal(where);
      parameter.name = std::move(label);
      statement.parameters.push_back(std::move(parameter));
      named = true;
    } else {
      if (named && parser.peek().kind != Token::Kind::End)
        refuse("argument " + std::to_string(index) + " has no name after a named argument (found " +
               describe(parser.peek()) + ")");
      statement.parameters.push_back(parser.required_literal(where));
    }
    if (parser.peek().kind == Token::Kind::End) return;
    if (parser.peek().kind != Token::Kind::Comma)
      refuse("expected \",\" after argument " + std::to_string(index) + " but found " +
             describe(parser.peek()));
    parser.next();
  }
}

// INSERT INTO LOG_MSG (columns) VALUES (values): the error log's row.
void parse_insert(Parser& parser, Statement& statement) {
  parser.next();  // INSERT
  parser.expect_word("INTO");
  const std::string table = parser.name(false, "a table name");
  if (!ascii::iequals(table, "LOG_MSG"))
    refuse("INSERT is only accepted into LOG_MSG, not into " + table);
  std::vector<std::string> columns;
  parser.expect(Token::Kind::Open, "(");
  for (;;) {
    columns.push_back(parser.name(false, "a column name"));
    if (parser.peek().kind != Token::Kind::Comma) break;
    parser.next();
  }
  parser.expect(Token::Kind::Close, ")");
  parser.expect_word("VALUES");
  parser.expect(Token::Kind::Open, "(");
  std::vector<std::string> values;
  for (;;) {
    const std::string where = "as value " + std::to_string(values.size() + 1);
    if (parser.at_word("GETDATE")) {
      parser.next();
      parser.expect(Token::Kind::Open, "(");
      parser.expect(Token::Kind::Close, ")");
      values.emplace_back("GETDATE()");
    } else if (parser.at_word("TO_DATE")) {
      parser.next();
      parser.expect(Token::Kind::Open, "(");
      for (int piece = 0; piece < 2; ++piece) {
        if (piece == 1) parser.expect(Token::Kind::Comma, ",");
        if (parser.peek().kind != Token::Kind::Text)
          refuse("expected a quoted text in TO_DATE but found " + describe(parser.peek()));
        std::string value = parser.next().value;
        const int size = static_cast<int>(value.size());
        statement.parameters.push_back({"", 200, size, Variant(std::move(value))});
      }
      parser.expect(Token::Kind::Close, ")");
      values.emplace_back("TO_DATE(?, ?)");
    } else {
      statement.parameters.push_back(parser.required_literal(where));
      values.emplace_back("?");
    }
    if (parser.peek().kind != Token::Kind::Comma) break;
    parser.next();
  }
  parser.expect(Token::Kind::Close, ")");
  parser.expect_end();
  if (columns.size() != values.size())
    refuse("INSERT names " + std::to_string(columns.size()) + " columns but gives " +
           std::to_string(values.size()) + " values");
  std::string sql = "INSERT INTO " + table + " (";
  for (std::size_t i = 0; i < columns.size(); ++i) sql += (i ? ", " : "") + columns[i];
  sql += ") VALUES (";
  for (std::size_t i = 0; i < values.size(); ++i) sql += (i ? ", " : "") + values[i];
  statement.sql = sql + ")";
}

// SELECT column FROM infra_ids: reading a named counter.
void parse_select(Parser& parser, Statement& statement) {
  parser.next();  // SELECT
  const std::string column = parser.name(false, "a column name");
  parser.expect_word("FROM");
  const std::string table = parser.name(false, "a table name");
  if (!ascii::iequals(table, "infra_ids"))
    refuse("SELECT is only accepted from infra_ids, not from " + table);
  parser.expect_end();
  statement.sql = "SELECT " + column + " FROM " + table;
}

// UPDATE infra_ids SET column = value: advancing a named counter.
void parse_update(Parser& parser, Statement& statement) {
  parser.next();  // UPDATE
  const std::string table = parser.name(false, "a table name");
  if (!ascii::iequals(table, "infra_ids"))
    refuse("UPDATE is only accepted on infra_ids, not on " + table);
  parser.expect_word("SET");
  const std::string column = parser.name(false, "a column name");
  parser.expect(Token::Kind::Equals, "=");
  statement.parameters.push_back(parser.required_literal("as the new value"));
  parser.expect_end();
  statement.sql = "UPDATE " + table + " SET " + column + " = ?";
}

}  // namespace

bool is_plain_name(std::string_view name) {
  bool dot_seen = false;
  bool part_start = true;
  for (const char c : name) {
    if (part_start) {
      if (!is_name_start(c)) return false;
      part_start = false;
    } else if (c == '.' && !dot_seen) {
      dot_seen = true;
      part_start = true;
    } else if (!is_name_char(c)) {
      return false;
    }
  }
  return !part_start;
}

std::string call_form(std::string_view procedure, std::size_t parameter_count) {
  std::string text = "{ call " + std::string(procedure);
  if (parameter_count > 0) {
    text += "(";
    for (std::size_t i = 0; i < parameter_count; ++i) text += i ? ", ?" : "?";
    text += ")";
  }
  return text + " }";
}

Statement parse_text(std::string_view text) {
  Parser parser(tokenise(text));
  Statement statement;
  statement.kind = Statement::Kind::Text;
  statement.text = std::string(text);
  if (parser.peek().kind == Token::Kind::End) refuse("the statement is empty");
  if (parser.at_word("EXEC") || parser.at_word("EXECUTE")) {
    parse_call(parser, statement);
  } else if (parser.at_word("INSERT")) {
    parse_insert(parser, statement);
  } else if (parser.at_word("SELECT")) {
    parse_select(parser, statement);
  } else if (parser.at_word("UPDATE")) {
    parse_update(parser, statement);
  } else {
    refuse("not a procedure call (EXEC or EXECUTE) nor one of the component's own statements");
  }
  return statement;
}

Statement parse_command(std::string_view procedure, std::vector<Parameter> parameters) {
  if (!is_plain_name(procedure))
    refuse("the procedure name \"" + std::string(procedure) + "\" is not a plain name");
  Statement statement;
  statement.kind = Statement::Kind::Command;
  statement.text = call_form(procedure, parameters.size());
  statement.procedure = std::string(procedure);
  statement.parameters = std::move(parameters);
  return statement;
}

}  // namespace qdr::sql_text
