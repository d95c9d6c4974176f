-- Order types the closing branches on, and one service order per type with
-- its order-type record. Record ids are 100 + the order type (101 is type 1,
-- 119 is type 19, ...); feature seeds add containers, incidents and the
-- special cases (ids from 150 up).

INSERT INTO tab_tipo_ordem_servico VALUES
  (1,  'Exportação - coleta de container cheio'),
  (2,  'Importação - entrega de container cheio'),
  (3,  'Remoção entre terminais'),
  (7,  'Importação - entrega com agendamento'),
  (8,  'Exportação - coleta com agendamento'),
  (9,  'Carga fracionada - coleta e entrega'),
  (12, 'Devolução de container vazio'),
  (16, 'Posicionamento de container vazio'),
  (17, 'Retirada de container vazio'),
  (19, 'Cabotagem - saída do terminal de origem'),
  (20, 'Cabotagem - chegada no terminal de destino'),
  (21, 'Cabotagem - transbordo'),
  (22, 'Cabotagem - devolução ao terminal');

INSERT INTO tab_tipo_servico VALUES
  (1, 'Transporte com retirada e entrega em terminal'),
  (2, 'Transporte porta a porta');

INSERT INTO tab_status_pagto_os VALUES
  (1, 'Aguardando fechamento', 'N'),
  (2, 'Em pagamento', 'S'),
  (3, 'Paga', 'S');

INSERT INTO tab_status_os_tipo VALUES (1, 'Aberta'), (2, 'Fechada');

INSERT INTO tab_tipo_docto VALUES (1, 'Nota Fiscal'), (2, 'Conhecimento de Transporte'),
  (3, 'Minuta de Despacho');

INSERT INTO fornecedor VALUES
  (10, 'Transportadora Rápida Santos Ltda.', '12.345.678/0001-90', 'N'),
  (11, 'Expresso Baixada Logística S.A.', '23.456.789/0001-01', 'N'),
  (20, 'Terminal de Contêineres do Valongo', '34.567.890/0001-12', 'S'),
  (21, 'Terminal Alemoa Operações Portuárias', '45.678.901/0001-23', 'S'),
  (30, 'Armazém Geral Cubatão (VAS)', '56.789.012/0001-34', 'S');

INSERT INTO ordem_servico
  (ordem_servico_id, num_os, data_servico, data_emissao, fornecedor_id, tab_tipo_servico_id,
   tab_status_pagto_os_id, observ)
SELECT 1000 + t, 'OS-2026-' || lpad((1000 + t)::text, 5, '0'), date '2026-11-10',
       timestamp '2026-11-09 08:30', CASE WHEN t % 2 = 0 THEN 11 ELSE 10 END,
       CASE WHEN t IN (1, 2) THEN 1 ELSE 2 END, 1,
       'Ordem de serviço de exemplo do tipo ' || t
FROM unnest(ARRAY[1, 2, 3, 7, 8, 9, 12, 16, 17, 19, 20, 21, 22]) AS t;

INSERT INTO ordem_servico_tipo
  (ordem_servico_tipo_id, ordem_servico_id, tab_tipo_ordem_servico_id, data_ini_execucao,
   data_fim_execucao, data_retirada_terminal, data_entrega_terminal, terminal_vazio_id,
   terminal_cheio_id, placa, flag_contr_canhoto, tab_tipo_docto_id, id_sistema_externo,
   flag_num_docto)
SELECT 100 + t, 1000 + t, t, timestamp '2026-11-10 08:00', timestamp '2026-11-10 17:30',
       CASE WHEN t IN (1, 2) THEN timestamp '2026-11-10 07:15' END,
       CASE WHEN t IN (1, 2) THEN timestamp '2026-11-10 18:40' END,
       20, 21, 'ABC1D23', CASE WHEN t = 2 THEN 'S' ELSE 'N' END, 1, 'NF-' || (5000 + t),
       CASE WHEN t = 1 THEN 'S' ELSE 'N' END
FROM unnest(ARRAY[1, 2, 3, 7, 8, 9, 12, 16, 17, 19, 20, 21, 22]) AS t;
