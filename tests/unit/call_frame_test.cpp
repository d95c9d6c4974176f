#include <gtest/gtest.h>

#include <stdexcept>

#include "component/call_frame.h"
#include "qdr/dispatch.h"
#include "qdr/error.h"
#include "qdr/qdr.h"

namespace qdr {
namespace {

// An empty connection keeps the error-log writer away from any database.
const Variant kNoConnection("");
const Variant kKind("SQLSERVER");

Variant run(const CallFrame& frame, int user, Variant& message, std::function<bool()> work) {
  return run_call_frame(frame, kNoConnection, kKind, Variant(user), message, work);
}

TEST(CallFrame, StatusFollowsTheRoutine) {
  Variant message("antes");
  EXPECT_EQ(run(kFrames[0], 2, message, [] { return true; }), Variant::integer(0));
  EXPECT_EQ(message, Variant("antes"));  // success leaves the message alone

  // A routine that fails without raising keeps its own message.
  EXPECT_EQ(run(kFrames[0], 1, message,
                [&] {
                  message = Variant("Preencha Observação");
                  return false;
                }),
            Variant::integer(10));
  EXPECT_EQ(message, Variant("Preencha Observação"));
}

// A trapped error gives the fixed text; user 1 also gets the detail, glued
// on without a separator, in each method's own layout.
TEST(CallFrame, TrappedErrorLayoutPerMethod) {
  struct Row {
    int slot;
    const char* user_text;
    const char* detail;
  };
  const Row rows[] = {
      {0, "Problemas na Montagem da Lista de Indicadores. Contacte o Administrador do Sistema.",
       " - T318QDR.gMonta_Lista_Tab_Tipo_Incidente( Overflow :  No Nº 0)SQL: "},
      {1, "Problemas na Gravação do Incidente. Contacte o Administrador do Sistema.",
       " - T318QDR.gGrava_Incidente( Overflow :  No Nº 0)SQL: "},
      {2,
       "Problema na Consulta do Porto e Agente relacionados ao Usuário. Contacte o "
       "Administrador do Sistema.",
       " - T318QDR.gConsulta_Porto_Ponto -(Overflow :  No Nº 0)"},
      {3, "Acesso ao Fechamento da OS não disponível. Favor tentar mais tarde.",
       " - T318QDR.gConsulta_Ordem_Servico_Tipo (Overflow : 6)   No Nº 0"},
      {4, "Acesso ao Fechamento da OS não disponível. Favor tentar mais tarde.",
       " - T318QDR.gGrava_Fechamento (Overflow : 6)   No Nº 0"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(kFrames[row.slot].method);
    const auto overflow = []() -> bool { throw Error(6, "Overflow"); };
    Variant operator_message;
    EXPECT_EQ(run(kFrames[row.slot], 2, operator_message, overflow), Variant::integer(10));
    EXPECT_EQ(operator_message, Variant(row.user_text));

    Variant technical_message;
    EXPECT_EQ(run(kFrames[row.slot], 1, technical_message, overflow), Variant::integer(10));
    EXPECT_EQ(technical_message, Variant(std::string(row.user_text) + row.detail));
  }
}

TEST(CallFrame, ForeignExceptionsAreTrappedToo) {
  Variant message;
  EXPECT_EQ(run(kFrames[3], 1, message, []() -> bool { throw std::runtime_error("boom"); }),
            Variant::integer(10));
  EXPECT_EQ(message,
            Variant("Acesso ao Fechamento da OS não disponível. Favor tentar mais "
                    "tarde. - T318QDR.gConsulta_Ordem_Servico_Tipo (boom : 440)   No Nº 0"));
}

TEST(Dispatch, InterfaceTable) {
  const auto& table = methods();
  ASSERT_EQ(table.size(), 5u);
  const std::pair<const char*, std::size_t> expected[] = {{"gMonta_Lista_Tab_Tipo_Incidente", 12},
                                                          {"gGrava_Incidente", 13},
                                                          {"gConsulta_Porto_Ponto", 8},
                                                          {"gConsulta_Ordem_Servico_Tipo", 57},
                                                          {"gGrava_Fechamento", 44}};
  for (std::size_t i = 0; i < table.size(); ++i) {
    EXPECT_EQ(table[i].name, expected[i].first);
    EXPECT_EQ(table[i].parameters.size(), expected[i].second);
    EXPECT_EQ(table[i].dispid, 0x60030000 + static_cast<int32_t>(i));
  }
  // The connection comes second in the port lookup; its kind is called
  // invntBanco_Dados in the last two methods.
  EXPECT_EQ(find_method("gConsulta_Porto_Ponto")->parameters[1], "invntConecta_db");
  EXPECT_EQ(find_method("gGrava_Fechamento")->parameters[3], "invntBanco_Dados");
  EXPECT_EQ(find_method("gconsulta_porto_ponto"), nullptr);  // names are exact
}

TEST(Dispatch, InvokeChecksItsArguments) {
  QDR object;
  std::vector<Variant> too_few(7);
  EXPECT_THROW(invoke(object, "gConsulta_Porto_Ponto", too_few), std::invalid_argument);
  EXPECT_THROW(invoke(object, "gNada", too_few), std::invalid_argument);
}

// A missing argument arrives as an Error variant; the frame passes it on
// untouched, and an order loading without its key fails with the routine's
// own message and no database work.
TEST(Dispatch, MissingArgumentsReachTheRoutine) {
  QDR object;
  std::vector<Variant> args(57, Variant::error(Variant::kParamNotFound));
  args[0] = Variant("Provider=Replay;Script=/nonexistent/script.json");
  const Variant status = invoke(object, "gConsulta_Ordem_Servico_Tipo", args);
  EXPECT_EQ(status, Variant::integer(10));
  EXPECT_EQ(args[5], Variant::error(Variant::kParamNotFound));
  EXPECT_EQ(args[27], Variant("Ordem Serviço Tipo não Informado. Contacte o Administrador."));
}

}  // namespace
}  // namespace qdr
