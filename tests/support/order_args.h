#pragma once

// Arguments of the order routines as the orders suites pass them.

#include <string>
#include <string_view>
#include <vector>

#include "qdr/variant.h"

namespace qdr::test {

// The arguments the order-level routines share: connection, user, company
// 1, database kind "SQLSERVER", product "Fechamento de OS", and the message,
// preset to "antes" so that "left alone" can be seen.
struct CommonArgs {
  CommonArgs(const std::string& connection_string, int user_id);
  Variant connection, user, company{1}, kind{"SQLSERVER"}, product{"Fechamento de OS"};
  Variant message{"antes"};
};

// The 57 arguments of gConsulta_Ordem_Servico_Tipo, addressed by name: the
// connection, user and key as given, company, kind and product as
// CommonArgs has them, every other one Empty.
class OrderLoad {
 public:
  OrderLoad(const std::string& connection, int user, Variant key);
  // Throws std::invalid_argument for a name the method does not have.
  Variant& operator[](std::string_view name);
  // Calls the method through the dispatch table on a fresh QDR object and
  // returns its status.
  Variant call();

 private:
  std::vector<std::string> names_;
  std::vector<Variant> args_;
};

}  // namespace qdr::test
