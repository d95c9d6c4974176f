-- Internet users with their branch and the branch's ports; incident types,
-- the order types each one may be recorded on, and the incidents recorded
-- per order-type record.

-- The place a branch operates from (its agency at the port).
CREATE TABLE ponto_operacao (
  ponto_operacao_id integer PRIMARY KEY,
  descricao         varchar(80) NOT NULL
);

CREATE TABLE filial (
  filial_id         integer PRIMARY KEY,
  nome              varchar(80) NOT NULL,
  ponto_operacao_id integer NOT NULL REFERENCES ponto_operacao
);

-- The users the calling application logs in; user 1 is the technical
-- administrator who sees the technical detail of failures.
CREATE TABLE usuario_internet (
  usuario_internet_id integer PRIMARY KEY,
  login               varchar(30) NOT NULL UNIQUE,
  nome                varchar(100) NOT NULL,
  perfil              varchar(20) NOT NULL CHECK (perfil IN ('TECNICO', 'OPERADOR')),
  filial_id           integer REFERENCES filial,
  flag_ativo          char(1) NOT NULL DEFAULT 'S' CHECK (flag_ativo IN ('S', 'N'))
);

-- Ports a branch serves. Only active ports are offered to the user.
CREATE TABLE porto (
  porto_id   integer PRIMARY KEY,
  nome_porto varchar(80) NOT NULL,
  filial_id  integer NOT NULL REFERENCES filial,
  flag_ativo char(1) NOT NULL DEFAULT 'S' CHECK (flag_ativo IN ('S', 'N'))
);
CREATE INDEX porto_filial ON porto (filial_id);

-- Incident types ("indicadores"). flag_contr_canhoto marks the types that
-- concern the control of the signed delivery receipt (canhoto).
CREATE TABLE tab_tipo_incidente (
  tab_tipo_incidente_id integer PRIMARY KEY,
  descricao             varchar(100) NOT NULL,
  flag_contr_canhoto    char(1) NOT NULL DEFAULT 'N' CHECK (flag_contr_canhoto IN ('S', 'N')),
  flag_ativo            char(1) NOT NULL DEFAULT 'S' CHECK (flag_ativo IN ('S', 'N'))
);

-- The incident types that may be recorded on each order type, in the order
-- the closing screen lists them. flag_tipo_cadastro is the registration kind
-- the type is offered with: 'M' entered by the operator, 'A' entered by the
-- system.
CREATE TABLE tab_tipo_incidente_tipo_os (
  tab_tipo_ordem_servico_id integer NOT NULL REFERENCES tab_tipo_ordem_servico,
  tab_tipo_incidente_id     integer NOT NULL REFERENCES tab_tipo_incidente,
  flag_tipo_cadastro        char(1) NOT NULL DEFAULT 'A' CHECK (flag_tipo_cadastro IN ('M', 'A')),
  ordem_exibicao            integer NOT NULL DEFAULT 0,
  PRIMARY KEY (tab_tipo_ordem_servico_id, tab_tipo_incidente_id)
);

-- The incidents recorded for an order-type record: one row per incident type,
-- replaced as a whole each time the operator saves the list.
CREATE TABLE incidente_os_tipo (
  ordem_servico_tipo_id integer NOT NULL REFERENCES ordem_servico_tipo,
  tab_tipo_incidente_id integer NOT NULL REFERENCES tab_tipo_incidente,
  flag_selecionado      char(1) NOT NULL CHECK (flag_selecionado IN ('S', 'N')),
  justificativa         varchar(255),
  flag_tipo_cadastro    char(1),
  usuario_internet_id   integer NOT NULL REFERENCES usuario_internet,
  data_registro         timestamp NOT NULL DEFAULT statement_timestamp()::timestamp,
  PRIMARY KEY (ordem_servico_tipo_id, tab_tipo_incidente_id)
);

-- The general observation the operator writes with the incidents.
ALTER TABLE ordem_servico_tipo ADD COLUMN IF NOT EXISTS observacao varchar(300);
