-- Users, branches and ports; incident types and where they apply.
--
-- Users: 1 the technical administrator (Santos branch, two ports), 2 an
-- operator (Rio branch, three active ports and an inactive one), 3 an
-- operator of a branch without ports, 4 an inactive operator.
-- Incident types: record 101 (order type 1) offers four, record 102 (order
-- type 2) four including type 18 with registration kind 'M', record 103
-- (order type 3) three with type 17 already recorded; the other records'
-- order types offer none.

INSERT INTO ponto_operacao VALUES
  (1, 'Agência Santos'),
  (2, 'Agência Rio de Janeiro'),
  (3, 'Agência Curitiba');

INSERT INTO filial VALUES
  (1, 'Filial Santos', 1),
  (2, 'Filial Rio de Janeiro', 2),
  (3, 'Filial Curitiba', 3);

INSERT INTO usuario_internet VALUES
  (1, 'admin', 'Administrador do Sistema', 'TECNICO', 1, 'S'),
  (2, 'operador.rio', 'Operador Rio de Janeiro', 'OPERADOR', 2, 'S'),
  (3, 'operador.cwb', 'Operador Curitiba', 'OPERADOR', 3, 'S'),
  (4, 'operador.inativo', 'Operador Desligado', 'OPERADOR', 1, 'N');

INSERT INTO porto VALUES
  (11, 'Porto de Santos', 1, 'S'),
  (12, 'Porto de São Sebastião', 1, 'S'),
  (21, 'Porto do Rio de Janeiro', 2, 'S'),
  (22, 'Porto de Itaguaí', 2, 'S'),
  (23, 'Porto de Angra dos Reis', 2, 'S'),
  (24, 'Porto de Niterói', 2, 'N');

INSERT INTO tab_tipo_incidente VALUES
  (10, 'Atraso na retirada do container no terminal', 'N', 'S'),
  (11, 'Atraso na entrega do container', 'N', 'S'),
  (12, 'Avaria no container', 'N', 'S'),
  (13, 'Lacre divergente do informado na OS', 'N', 'S'),
  (15, 'Canhoto da nota fiscal não devolvido', 'S', 'S'),
  (16, 'Veículo quebrado no percurso', 'N', 'S'),
  (17, 'Motorista substituído', 'N', 'S'),
  (18, 'Entrega recusada pelo destinatário', 'S', 'S'),
  (19, 'Container retido na vistoria (desativado)', 'N', 'N');

INSERT INTO tab_tipo_incidente_tipo_os VALUES
  (1, 10, 'A', 1),
  (1, 12, 'A', 2),
  (1, 13, 'A', 3),
  (1, 16, 'M', 4),
  (2, 11, 'A', 1),
  (2, 12, 'A', 2),
  (2, 15, 'A', 3),
  (2, 18, 'M', 4),
  (2, 19, 'A', 5),
  (3, 10, 'A', 1),
  (3, 11, 'A', 2),
  (3, 17, 'M', 3);

INSERT INTO incidente_os_tipo
  (ordem_servico_tipo_id, tab_tipo_incidente_id, flag_selecionado, justificativa,
   flag_tipo_cadastro, usuario_internet_id, data_registro)
VALUES
  (103, 17, 'S', 'Motorista substituído na saída do terminal', 'M', 2,
   timestamp '2026-11-10 10:05');

UPDATE ordem_servico_tipo SET observacao = 'Troca de motorista comunicada ao cliente'
 WHERE ordem_servico_tipo_id = 103;
