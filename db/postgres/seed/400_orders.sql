-- Containers, trucks, CTACs, fractional schedules, VAS terminals and system
-- parameters for the seeded orders, plus extra order-type records (150 up)
-- for the cases the core seed does not cover. db/postgres/README.md lists
-- the cases.

INSERT INTO tab_tipo_container VALUES
  (1, '20'' Dry Standard', '22G1'),
  (2, '40'' Dry Standard', '42G1'),
  (3, '40'' High Cube', '45G1'),
  (4, '20'' Reefer', '22R1'),
  (5, '40'' Reefer High Cube', '45R1');

INSERT INTO container (container_id, num_container, tab_tipo_container_id, tara) VALUES
  (1,  'MSCU1234565', 1, 2200.00),
  (2,  'MAEU7654321', 3, 3900.50),
  (3,  'HLXU2002001', 2, 3750.00),
  (4,  'TCLU3003003', 4, 3050.00),
  (5,  'CMAU4004004', 1, 2250.00),
  (6,  'MSKU5005005', 2, 3700.00),
  (7,  'OOLU6006006', 3, 3950.00),
  (8,  'EGLV7007007', 1, 2180.00),
  (9,  'CSNU8008008', 2, 3720.00),
  (10, 'TGHU9009009', 1, 2210.00),
  (11, 'FSCU1010101', 5, 4800.00),
  (12, 'SEGU1111111', 1, 2230.00),
  (13, 'TRHU1212121', 2, 3760.00),
  (14, 'GESU1313131', 3, 3980.00),
  (15, 'BMOU1414141', 1, 2190.00);

INSERT INTO veiculo VALUES
  (1, 'ABC1D23', 'C', 10),
  (2, 'DEF2G34', 'C', 11),
  (3, 'CRT1A11', 'R', 10),
  (4, 'CRT2B22', 'R', 10),
  (5, 'CRT3C33', 'R', 11);

INSERT INTO motorista VALUES
  (1, 'José Carlos da Silva', '01234567890'),
  (2, 'Maria Aparecida Souza', '09876543210');

INSERT INTO motorista_veiculo VALUES (1, 1, 1), (2, 2, 2);

-- Extra service orders and order-type records.
INSERT INTO ordem_servico
  (ordem_servico_id, num_os, data_servico, data_emissao, fornecedor_id, tab_tipo_servico_id,
   tab_status_pagto_os_id, observ)
VALUES
  (1050, 'OS-2026-01050', date '2026-11-12', timestamp '2026-11-11 09:00', 10, 2, 1,
   'Carga fracionada sem armazém VAS'),
  (1051, 'OS-2026-01051', date '2026-11-12', timestamp '2026-11-11 09:00', 10, 2, 2,
   'Exportação porta a porta'),
  (1052, 'OS-2026-01052', date '2026-11-12', timestamp '2026-11-11 09:00', 11, 1, 3,
   'Remoção com retirada em terminal'),
  (1053, 'OS-2026-01053', date '2026-11-12', timestamp '2026-11-11 09:00', 11, 1, 1, NULL),
  (1060, 'OS-2026-01060', date '2026-11-13', timestamp '2026-11-12 07:00', 10, 1, 1,
   'Carga de medição: 1 container'),
  (1061, 'OS-2026-01061', date '2026-11-13', timestamp '2026-11-12 07:00', 10, 1, 1,
   'Carga de medição: 10 containers'),
  (1062, 'OS-2026-01062', date '2026-11-13', timestamp '2026-11-12 07:00', 10, 1, 1,
   'Carga de medição: 100 containers');

INSERT INTO ordem_servico_tipo
  (ordem_servico_tipo_id, ordem_servico_id, tab_tipo_ordem_servico_id, data_ini_execucao,
   data_fim_execucao, data_retirada_terminal, data_entrega_terminal, terminal_vazio_id,
   terminal_cheio_id, placa, flag_contr_canhoto, tab_tipo_docto_id, id_sistema_externo,
   flag_num_docto)
VALUES
  (150, 1050, 9, timestamp '2026-11-12 08:00', timestamp '2026-11-12 12:00', NULL, NULL,
   NULL, NULL, 'DEF2G34', 'N', 1, 'NF-6150', 'N'),
  (151, 1051, 1, timestamp '2026-11-12 08:00', timestamp '2026-11-12 12:00', NULL, NULL,
   20, 21, 'ABC1D23', 'N', 1, 'NF-6151', 'N'),
  (152, 1052, 3, timestamp '2026-11-12 08:00', timestamp '2026-11-12 12:00',
   timestamp '2026-11-12 07:05', timestamp '2026-11-12 13:10', 20, 21, 'ABC1D23', 'N', 2,
   'CT-6152', 'S'),
  (153, 1053, 2, NULL, NULL, NULL, NULL, NULL, NULL, NULL, 'N', NULL, NULL, 'N'),
  -- A second record on order 1001, carrying a container of its own.
  (154, 1001, 2, timestamp '2026-11-10 09:00', timestamp '2026-11-10 11:45', NULL, NULL,
   20, 21, 'DEF2G34', 'N', 1, 'NF-6154', 'N'),
  -- Written by the database tests (closing fields).
  (155, 1051, 1, timestamp '2026-11-12 08:00', timestamp '2026-11-12 12:00', NULL, NULL,
   20, 21, 'ABC1D23', 'N', 1, 'NF-6155', 'N'),
  (160, 1060, 1, timestamp '2026-11-13 08:00', timestamp '2026-11-13 17:00', NULL, NULL,
   20, 21, 'ABC1D23', 'N', 1, 'NF-6160', 'N'),
  (161, 1061, 1, timestamp '2026-11-13 08:00', timestamp '2026-11-13 17:00', NULL, NULL,
   20, 21, 'ABC1D23', 'N', 1, 'NF-6161', 'N'),
  (162, 1062, 1, timestamp '2026-11-13 08:00', timestamp '2026-11-13 17:00', NULL, NULL,
   20, 21, 'ABC1D23', 'N', 1, 'NF-6162', 'N');

-- Shipment requests: 51xx belong to order 1001 (type 1), and so on.
INSERT INTO solicitacao_embarque (solicitacao_embarque_id, ordem_servico_id, num_solicitacao,
                                  data_solicitacao) VALUES
  (5101, 1001, 'SE-2026-5101', timestamp '2026-11-05 10:00'),
  (5102, 1001, 'SE-2026-5102', timestamp '2026-11-05 10:30'),
  (5201, 1002, 'SE-2026-5201', timestamp '2026-11-05 11:00'),
  (5301, 1003, 'SE-2026-5301', timestamp '2026-11-05 11:30'),
  (5701, 1007, 'SE-2026-5701', timestamp '2026-11-06 08:00'),
  (5801, 1008, 'SE-2026-5801', timestamp '2026-11-06 08:30'),
  (5802, 1008, 'SE-2026-5802', timestamp '2026-11-06 08:45'),
  (6121, 1012, 'SE-2026-6121', timestamp '2026-11-06 09:00'),
  (6161, 1016, 'SE-2026-6161', timestamp '2026-11-06 09:30'),
  (6171, 1017, 'SE-2026-6171', timestamp '2026-11-06 10:00'),
  (6191, 1019, 'SE-2026-6191', timestamp '2026-11-06 10:30'),
  (6201, 1020, 'SE-2026-6201', timestamp '2026-11-06 11:00'),
  (6211, 1021, 'SE-2026-6211', timestamp '2026-11-06 11:30'),
  (6221, 1022, 'SE-2026-6221', timestamp '2026-11-06 12:00'),
  (6601, 1060, 'SE-2026-6601', timestamp '2026-11-12 07:00'),
  (6611, 1061, 'SE-2026-6611', timestamp '2026-11-12 07:00'),
  (6621, 1062, 'SE-2026-6621', timestamp '2026-11-12 07:00');

-- Container scheduling: every container row except cabotage (19 to 22).
INSERT INTO agend_container (agend_container_id, ordem_servico_id, container_id,
                             tab_tipo_container_id, fornecedor_id, data_agendamento) VALUES
  (8001, NULL, 1,    1, 20, timestamp '2026-11-10 07:00'),
  (8002, NULL, 2,    3, 20, timestamp '2026-11-10 07:00'),
  (8003, NULL, NULL, 2, 20, timestamp '2026-11-10 07:30'),
  (8004, NULL, 12,   1, 21, timestamp '2026-11-10 08:30'),
  (8011, NULL, 3,    2, 21, timestamp '2026-11-10 07:00'),
  (8021, NULL, 4,    4, 20, timestamp '2026-11-10 07:00'),
  (8022, NULL, 5,    1, 20, timestamp '2026-11-10 07:00'),
  (8071, NULL, 6,    2, 21, timestamp '2026-11-10 07:00'),
  (8081, NULL, 7,    3, 20, timestamp '2026-11-10 07:00'),
  (8082, NULL, 8,    1, 20, timestamp '2026-11-10 07:00'),
  (8121, NULL, 9,    2, 21, timestamp '2026-11-10 07:00'),
  (8161, NULL, 10,   1, 20, timestamp '2026-11-10 07:00'),
  (8171, NULL, 11,   5, 20, timestamp '2026-11-10 07:00');

INSERT INTO solicit_embarque_container
  (solicit_embarque_container_id, solicitacao_embarque_id, ordem_servico_tipo_id, container_id,
   tab_tipo_container_id, agend_container_id, num_lacre_cia_maritima, num_lacre_receita_federal,
   num_lacre_min_saude, tara, peso_carga, valor_nf, cavalo_id, motorista_veiculo_id, carreta_id,
   carreta1_id, carreta2_id)
VALUES
  -- Order-type 101: three rows, two shipment requests, the last one without
  -- a container number yet and without seals, tare or truck.
  (7001, 5101, 101, 1,    1, 8001, 'MSC123456', 'RF0001', 'MS0001', 2200.00, 18500.50,
   125000.00, 1, 1, 3, 3, 4),
  (7002, 5101, 101, 2,    3, 8002, 'MSC123457', NULL, NULL, 3900.50, 21000.00, 98000.75,
   1, 1, NULL, 3, NULL),
  (7003, 5102, 101, NULL, 2, 8003, NULL, NULL, NULL, NULL, NULL, NULL,
   NULL, NULL, NULL, NULL, NULL),
  -- Order-type 154, same order 1001.
  (7004, 5102, 154, 12,   1, 8004, 'HLC000154', NULL, NULL, 2230.00, NULL, NULL,
   2, 2, 5, NULL, NULL),
  (7011, 5201, 102, 3,    2, 8011, 'HLC998877', 'RF0002', NULL, 3750.00, 15000.00, 87000.00,
   2, 2, 5, NULL, NULL),
  (7021, 5301, 103, 4,    4, 8021, 'TCL300301', NULL, NULL, 3050.00, NULL, NULL,
   1, 1, NULL, NULL, NULL),
  (7022, 5301, 103, 5,    1, 8022, 'TCL300302', NULL, NULL, 2250.00, NULL, NULL,
   1, 1, NULL, NULL, NULL),
  (7071, 5701, 107, 6,    2, 8071, 'MSK500501', 'RF0071', NULL, 3700.00, 12000.00, 45000.00,
   2, 2, 5, NULL, NULL),
  (7081, 5801, 108, 7,    3, 8081, 'OOL600601', NULL, NULL, 3950.00, 19500.00, 110000.00,
   1, 1, 3, NULL, NULL),
  (7082, 5802, 108, 8,    1, 8082, 'EGL700701', NULL, NULL, 2180.00, 9800.00, 36000.00,
   1, 1, 4, NULL, NULL),
  -- Order-type 112: a container with nothing filled in (tare null).
  (7121, 6121, 112, 9,    2, 8121, NULL, NULL, NULL, NULL, NULL, NULL,
   NULL, NULL, NULL, NULL, NULL),
  (7161, 6161, 116, 10,   1, 8161, 'TGH900901', NULL, NULL, 2210.00, 16000.00, 52000.00,
   2, 2, 5, NULL, NULL),
  (7171, 6171, 117, 11,   5, 8171, 'FSC101001', NULL, 'MS1010', 4800.00, 22000.00, 180000.00,
   1, 1, NULL, 3, 4),
  (7191, 6191, 119, 13,   2, NULL, 'TRH121201', NULL, NULL, 3760.00, NULL, NULL,
   NULL, NULL, NULL, NULL, NULL),
  (7201, 6201, 120, 14,   3, NULL, 'GES131301', NULL, NULL, 3980.00, NULL, NULL,
   NULL, NULL, NULL, NULL, NULL),
  (7211, 6211, 121, 15,   1, NULL, 'BMO141401', NULL, NULL, 2190.00, NULL, NULL,
   NULL, NULL, NULL, NULL, NULL),
  (7221, 6221, 122, NULL, 1, NULL, NULL, NULL, NULL, NULL, NULL, NULL,
   NULL, NULL, NULL, NULL, NULL);

-- Measurement orders 160, 161 and 162: 1, 10 and 100 containers, all filled.
INSERT INTO container (container_id, num_container, tab_tipo_container_id, tara)
SELECT 1000 + n, 'BNCU' || lpad(n::text, 7, '0'), 1 + n % 3, 2000 + n
FROM generate_series(1, 111) AS n;

INSERT INTO solicit_embarque_container
  (solicit_embarque_container_id, solicitacao_embarque_id, ordem_servico_tipo_id, container_id,
   tab_tipo_container_id, num_lacre_cia_maritima, num_lacre_receita_federal,
   num_lacre_min_saude, tara, peso_carga, valor_nf, cavalo_id, motorista_veiculo_id, carreta_id,
   carreta1_id, carreta2_id)
SELECT 20000 + n, se, ost, 1000 + n, 1 + n % 3, 'BNL' || lpad(n::text, 6, '0'),
       'BRF' || lpad(n::text, 6, '0'), 'BMS' || lpad(n::text, 6, '0'), 2000 + n + 0.25,
       15000 + n, 50000 + n + 0.5, 1, 1, 3, 3, 4
FROM (SELECT n,
             CASE WHEN n = 1 THEN 6601 WHEN n <= 11 THEN 6611 ELSE 6621 END AS se,
             CASE WHEN n = 1 THEN 160 WHEN n <= 11 THEN 161 ELSE 162 END AS ost
      FROM generate_series(1, 111) AS n) AS g;

SELECT setval(pg_get_serial_sequence('container', 'container_id'),
              (SELECT max(container_id) FROM container));
SELECT setval(pg_get_serial_sequence('solicit_embarque_container',
                                     'solicit_embarque_container_id'),
              (SELECT max(solicit_embarque_container_id) FROM solicit_embarque_container));

-- CTACs: orders 1001, 1007 and 1008 (the latter with an older cancelled one).
INSERT INTO docto_transporte (docto_transporte_id, ordem_servico_id, solicitacao_embarque_id,
                              num_docto_transporte, data_emissao, indic_cancelado) VALUES
  (9100, 1008, 5801, 'CTAC-2026-0099', timestamp '2026-11-08 10:00', 'S'),
  (9101, 1001, 5101, 'CTAC-2026-0001', timestamp '2026-11-09 10:00', 'N'),
  (9102, 1001, 5102, 'CTAC-2026-0002', timestamp '2026-11-09 10:05', 'N'),
  (9107, 1007, 5701, 'CTAC-2026-0007', timestamp '2026-11-09 11:00', 'N'),
  (9108, 1008, 5801, 'CTAC-2026-0008', timestamp '2026-11-09 12:00', 'N');

-- Fractional schedules of order 1009 (type 9): a collection without
-- invoices, a delivery with two and a delivery with one.
INSERT INTO agendamento_frac VALUES
  (6091, 1009, 'C', timestamp '2026-11-10 08:00', 'Rua do Comércio, 100 - Santos/SP'),
  (6092, 1009, 'E', timestamp '2026-11-10 14:00', 'Av. Ana Costa, 200 - Santos/SP'),
  (6093, 1009, 'E', timestamp '2026-11-10 16:00', 'Rua XV de Novembro, 300 - Santos/SP');

INSERT INTO nota_fiscal VALUES
  (6591, 6092, '000123451', '1', 1500.00, 120.50),
  (6592, 6092, '000123452', '1', 2300.40, 210.00),
  (6593, 6093, '000123453', '1', 990.10, 80.00);

INSERT INTO ordem_servico_terminal_vas VALUES (1009, 30);

-- Tracking event codes (1328 to 1334), whether the closing skips its date
-- checks against today (6247: 'S' skips), and one parameter without value.
INSERT INTO parametro_sistema VALUES
  (1328, 'Código do tracking Entrega no Porto', '21'),
  (1329, 'Código do tracking Saída do Porto', '22'),
  (1330, 'Código do tracking Chegada no ICT', '23'),
  (1332, 'Código do tracking Entrega Realizada (carga fracionada)', '25'),
  (1334, 'Código do tracking Chegada no CD de coleta (carga fracionada)', '24'),
  (6247, 'Fechamento de OS dispensa a consistência de datas contra a data de hoje', 'N'),
  (9000, 'Parâmetro reservado, sem valor', NULL);
