-- Loading an order for closing, writing its fields, and the lookups the
-- closing makes: fractional schedules, system parameters, VAS terminal.
-- Dates come back as "dd/mm/yyyy" texts and hours as "hh:mm" texts, the way
-- the closing screen shows them; a null date gives null date and hour.

-- The header of an order-type record: order, service type, supplier, payment
-- status, execution period, terminal times, terminals, plate and document.
CREATE FUNCTION sp_050_con_os_fechamento03(ordem_servico_tipo_id integer)
RETURNS TABLE (
  tab_tipo_ordem_servico_id integer,
  ordem_servico_id          integer,
  descr_tipo_servico        varchar,
  fornecedor                varchar,
  data_servico              varchar,
  num_os                    varchar,
  data_ini_execucao         varchar,
  hora_ini_execucao         varchar,
  data_fim_execucao         varchar,
  hora_fim_execucao         varchar,
  desc_tab_status_pagto_os  varchar,
  indic_os_em_pagamento     varchar,
  tab_tipo_servico_id       integer,
  data_retirada_terminal    varchar,
  hora_retirada_terminal    varchar,
  data_entrega_terminal     varchar,
  hora_entrega_terminal     varchar,
  fornecedor_id             integer,
  terminal_vazio_id         integer,
  terminal_cheio_id         integer,
  placa                     varchar,
  flag_contr_canhoto        varchar,
  tab_tipo_docto_id         integer,
  id_sistema_externo        varchar,
  flag_num_docto            varchar)
LANGUAGE sql STABLE AS $$
  SELECT ost.tab_tipo_ordem_servico_id,
         os.ordem_servico_id,
         ts.descr_tipo_servico::varchar,
         f.nome::varchar,
         to_char(os.data_servico, 'DD/MM/YYYY')::varchar,
         os.num_os::varchar,
         to_char(ost.data_ini_execucao, 'DD/MM/YYYY')::varchar,
         to_char(ost.data_ini_execucao, 'HH24:MI')::varchar,
         to_char(ost.data_fim_execucao, 'DD/MM/YYYY')::varchar,
         to_char(ost.data_fim_execucao, 'HH24:MI')::varchar,
         sp.desc_tab_status_pagto_os::varchar,
         sp.indic_os_em_pagamento::varchar,
         os.tab_tipo_servico_id,
         to_char(ost.data_retirada_terminal, 'DD/MM/YYYY')::varchar,
         to_char(ost.data_retirada_terminal, 'HH24:MI')::varchar,
         to_char(ost.data_entrega_terminal, 'DD/MM/YYYY')::varchar,
         to_char(ost.data_entrega_terminal, 'HH24:MI')::varchar,
         os.fornecedor_id,
         ost.terminal_vazio_id,
         ost.terminal_cheio_id,
         ost.placa::varchar,
         ost.flag_contr_canhoto::varchar,
         ost.tab_tipo_docto_id,
         ost.id_sistema_externo::varchar,
         ost.flag_num_docto::varchar
  FROM ordem_servico_tipo ost
  JOIN ordem_servico os ON os.ordem_servico_id = ost.ordem_servico_id
  JOIN tab_tipo_servico ts ON ts.tab_tipo_servico_id = os.tab_tipo_servico_id
  JOIN fornecedor f ON f.fornecedor_id = os.fornecedor_id
  JOIN tab_status_pagto_os sp ON sp.tab_status_pagto_os_id = os.tab_status_pagto_os_id
  WHERE ost.ordem_servico_tipo_id = $1
$$;

-- The container rows of an order that one order-type record carries, with
-- the order's observation on every row. Rows of one shipment request come
-- together, in the order they were requested.
CREATE FUNCTION sp_050_con_sol_cont_os_fecha03(ordem_servico_id integer,
                                               ordem_servico_tipo_id integer)
RETURNS TABLE (
  solicit_embarque_container_id integer,
  num_container                 varchar,
  num_lacre_cia_maritima        varchar,
  num_lacre_receita_federal     varchar,
  num_lacre_min_saude           varchar,
  tara                          numeric,
  agend_container_id            integer,
  tab_tipo_container_id         integer,
  peso_carga                    numeric,
  valor                         numeric,
  cavalo                        varchar,
  cavalo_id                     integer,
  motorista_veiculo_id          integer,
  motorista_veiculo             varchar,
  carreta1_id                   integer,
  carreta1                      varchar,
  carreta2_id                   integer,
  carreta2                      varchar,
  carreta_id                    integer,
  carreta                       varchar,
  observ                        varchar)
LANGUAGE sql STABLE AS $$
  SELECT sec.solicit_embarque_container_id,
         c.num_container::varchar,
         sec.num_lacre_cia_maritima::varchar,
         sec.num_lacre_receita_federal::varchar,
         sec.num_lacre_min_saude::varchar,
         sec.tara,
         sec.agend_container_id,
         coalesce(sec.tab_tipo_container_id, c.tab_tipo_container_id),
         sec.peso_carga,
         sec.valor_nf,
         cv.placa::varchar,
         sec.cavalo_id,
         sec.motorista_veiculo_id,
         (m.nome || ' - ' || mvv.placa)::varchar,
         sec.carreta1_id,
         r1.placa::varchar,
         sec.carreta2_id,
         r2.placa::varchar,
         sec.carreta_id,
         r.placa::varchar,
         os.observ::varchar
  FROM solicit_embarque_container sec
  JOIN solicitacao_embarque se ON se.solicitacao_embarque_id = sec.solicitacao_embarque_id
  JOIN ordem_servico os ON os.ordem_servico_id = se.ordem_servico_id
  LEFT JOIN container c ON c.container_id = sec.container_id
  LEFT JOIN veiculo cv ON cv.veiculo_id = sec.cavalo_id
  LEFT JOIN motorista_veiculo mv ON mv.motorista_veiculo_id = sec.motorista_veiculo_id
  LEFT JOIN motorista m ON m.motorista_id = mv.motorista_id
  LEFT JOIN veiculo mvv ON mvv.veiculo_id = mv.veiculo_id
  LEFT JOIN veiculo r1 ON r1.veiculo_id = sec.carreta1_id
  LEFT JOIN veiculo r2 ON r2.veiculo_id = sec.carreta2_id
  LEFT JOIN veiculo r ON r.veiculo_id = sec.carreta_id
  WHERE se.ordem_servico_id = $1
    AND ($2 IS NULL OR sec.ordem_servico_tipo_id = $2)
  ORDER BY se.solicitacao_embarque_id, sec.solicit_embarque_container_id
$$;

-- The order's CTAC, when one was issued and not cancelled: its flag and
-- number. No row when there is none.
CREATE FUNCTION sp_050_con_os_ctac02(ordem_servico_id integer)
RETURNS TABLE (flag_ctac_os varchar, num_docto_transporte varchar)
LANGUAGE sql STABLE AS $$
  SELECT 'S'::varchar, dt.num_docto_transporte::varchar
  FROM docto_transporte dt
  WHERE dt.ordem_servico_id = $1 AND dt.indic_cancelado = 'N'
  ORDER BY dt.docto_transporte_id
  LIMIT 1
$$;

-- Writes the closing fields of an order-type record and its status.
-- retorno: 0 done; 1 unknown order-type record; 2 unknown status; 3 unknown
-- document type; 4 a text too long for its column. Nothing is written
-- unless retorno is 0.
CREATE FUNCTION sp_050_gra_fecha_os_tipo03(ordem_servico_tipo_id integer,
                                           data_ini_execucao timestamp,
                                           data_fim_execucao timestamp,
                                           data_retirada_terminal timestamp,
                                           data_entrega_terminal timestamp,
                                           tab_status_os_tipo_id integer,
                                           placa varchar,
                                           usuario_internet_id integer,
                                           tab_tipo_docto_id integer,
                                           num_documento varchar)
RETURNS TABLE (retorno integer, msg_ret varchar)
LANGUAGE plpgsql AS $$
BEGIN
  IF $1 IS NULL OR NOT EXISTS (SELECT 1 FROM ordem_servico_tipo t
                               WHERE t.ordem_servico_tipo_id = $1) THEN
    RETURN QUERY SELECT 1, 'Ordem Serviço Tipo não encontrada.'::varchar;
    RETURN;
  END IF;
  IF $6 IS NULL OR NOT EXISTS (SELECT 1 FROM tab_status_os_tipo s
                               WHERE s.tab_status_os_tipo_id = $6) THEN
    RETURN QUERY SELECT 2, 'Status da Ordem Serviço Tipo inválido.'::varchar;
    RETURN;
  END IF;
  IF $9 IS NOT NULL AND NOT EXISTS (SELECT 1 FROM tab_tipo_docto d
                                    WHERE d.tab_tipo_docto_id = $9) THEN
    RETURN QUERY SELECT 3, 'Tipo de Documento inválido.'::varchar;
    RETURN;
  END IF;
  IF length($7) > 10 OR length($10) > 30 THEN
    RETURN QUERY SELECT 4, 'Placa ou Número do Documento longo demais.'::varchar;
    RETURN;
  END IF;
  UPDATE ordem_servico_tipo t
     SET data_ini_execucao = $2,
         data_fim_execucao = $3,
         data_retirada_terminal = $4,
         data_entrega_terminal = $5,
         tab_status_os_tipo_id = $6,
         placa = $7,
         usuario_fechamento_id = $8,
         tab_tipo_docto_id = $9,
         id_sistema_externo = $10,
         data_fechamento = statement_timestamp()::timestamp
   WHERE t.ordem_servico_tipo_id = $1;
  RETURN QUERY SELECT 0, NULL::varchar;
END
$$;

-- The fractional schedules of an order: one row per invoice of a schedule,
-- one row with a null invoice for a schedule without invoices.
CREATE FUNCTION sp_050_cons_tipo_os_frac01(ordem_servico_id integer)
RETURNS TABLE (agendamento_frac_id integer, indic_coleta_entrega varchar, nota_fiscal_id integer)
LANGUAGE sql STABLE AS $$
  SELECT af.agendamento_frac_id, af.indic_coleta_entrega::varchar, nf.nota_fiscal_id
  FROM agendamento_frac af
  LEFT JOIN nota_fiscal nf ON nf.agendamento_frac_id = af.agendamento_frac_id
  WHERE af.ordem_servico_id = $1
  ORDER BY af.agendamento_frac_id, nf.nota_fiscal_id
$$;

-- One system parameter by number; no row when it is not defined.
CREATE FUNCTION sp_nvt_con_parametro_sistema(parametro_sistema_id integer)
RETURNS TABLE (parametro varchar)
LANGUAGE sql STABLE AS $$
  SELECT p.parametro::varchar FROM parametro_sistema p WHERE p.parametro_sistema_id = $1
$$;

-- The VAS warehouse of an order; no row when it has none.
CREATE FUNCTION sp_050_cons_terminal_vas_os01(ordem_servico_id integer)
RETURNS TABLE (fornecedor_id integer)
LANGUAGE sql STABLE AS $$
  SELECT v.fornecedor_id FROM ordem_servico_terminal_vas v WHERE v.ordem_servico_id = $1
$$;
