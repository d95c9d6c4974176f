#include "tests/support/order_args.h"

#include <stdexcept>
#include <utility>

#include "qdr/dispatch.h"
#include "qdr/qdr.h"

namespace qdr::test {

namespace {

constexpr const char* kLoad = "gConsulta_Ordem_Servico_Tipo";

}  // namespace

CommonArgs::CommonArgs(const std::string& connection_string, int user_id)
    : connection(connection_string), user(user_id) {}

OrderLoad::OrderLoad(const std::string& connection, int user, Variant key)
    : names_(find_method(kLoad)->parameters), args_(names_.size()) {
  const CommonArgs common(connection, user);
  (*this)["invntConecta_db"] = common.connection;
  (*this)["invntUsuario_internet_id"] = common.user;
  (*this)["invntEmpresa_id"] = common.company;
  (*this)["invntBanco_Dados"] = common.kind;
  (*this)["invntNome_Produto"] = common.product;
  (*this)["invntOrdem_Servico_Tipo_ID"] = std::move(key);
}

Variant& OrderLoad::operator[](std::string_view name) {
  for (std::size_t i = 0; i < names_.size(); ++i)
    if (names_[i] == name) return args_[i];
  throw std::invalid_argument(std::string(name));
}

Variant OrderLoad::call() {
  QDR object;
  return invoke(object, kLoad, args_);
}

}  // namespace qdr::test
