-- Records one activity row. Called in named notation, every argument given:
--   sp_krn_inc_log_sistema2(tabela_sistema_id => 1, usuario_id => 2,
--                           registro_id => 3, tab_tipo_acao_id => 4,
--                           retorno => 0)
-- Ids are bigint so that a value bound as a 32- or 64-bit integer, or sent
-- as an untyped literal, resolves to this one function; values are stored as
-- given, 0 included.
--
-- Answers one row with column retorno: 0 when the row was written. The
-- retorno passed in is only there because the caller's call names it.
CREATE FUNCTION sp_krn_inc_log_sistema2(
  tabela_sistema_id bigint DEFAULT NULL,
  usuario_id        bigint DEFAULT NULL,
  registro_id       bigint DEFAULT NULL,
  tab_tipo_acao_id  bigint DEFAULT NULL,
  INOUT retorno     bigint DEFAULT 0)
LANGUAGE plpgsql
AS $$
BEGIN
  INSERT INTO log_sistema (tabela_sistema_id, usuario_id, registro_id, tab_tipo_acao_id)
  VALUES (sp_krn_inc_log_sistema2.tabela_sistema_id, sp_krn_inc_log_sistema2.usuario_id,
          sp_krn_inc_log_sistema2.registro_id, sp_krn_inc_log_sistema2.tab_tipo_acao_id);
  retorno := 0;
END
$$;
