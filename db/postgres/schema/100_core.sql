-- Service orders and their order-type records: the core that loading,
-- incidents and closing all stand on. Feature files (200+) add the tables
-- around them (shipment requests, containers, incidents, tracking, ...).

CREATE TABLE tab_tipo_ordem_servico (
  tab_tipo_ordem_servico_id integer PRIMARY KEY,
  descricao                 varchar(80) NOT NULL
);

CREATE TABLE tab_tipo_servico (
  tab_tipo_servico_id integer PRIMARY KEY,
  descr_tipo_servico  varchar(80) NOT NULL
);

CREATE TABLE tab_status_pagto_os (
  tab_status_pagto_os_id   integer PRIMARY KEY,
  desc_tab_status_pagto_os varchar(60) NOT NULL,
  indic_os_em_pagamento    char(1) NOT NULL DEFAULT 'N'
);

-- Status of an order-type record: 1 open, 2 closed (written by the closing).
CREATE TABLE tab_status_os_tipo (
  tab_status_os_tipo_id integer PRIMARY KEY,
  descricao             varchar(60) NOT NULL
);

CREATE TABLE tab_tipo_docto (
  tab_tipo_docto_id integer PRIMARY KEY,
  descricao         varchar(60) NOT NULL
);

-- Carriers, terminal operators and VAS warehouses alike.
CREATE TABLE fornecedor (
  fornecedor_id  integer PRIMARY KEY,
  nome           varchar(100) NOT NULL,
  cnpj           varchar(18),
  indic_terminal char(1) NOT NULL DEFAULT 'N'
);

CREATE TABLE ordem_servico (
  ordem_servico_id       integer PRIMARY KEY,
  num_os                 varchar(20) NOT NULL UNIQUE,
  data_servico           date NOT NULL,
  data_emissao           timestamp NOT NULL DEFAULT now(),
  fornecedor_id          integer NOT NULL REFERENCES fornecedor,
  tab_tipo_servico_id    integer NOT NULL REFERENCES tab_tipo_servico,
  tab_status_pagto_os_id integer NOT NULL REFERENCES tab_status_pagto_os,
  observ                 varchar(300)
);

-- One record per order type carried out under a service order: the row the
-- closing screen loads and the closing writes.
CREATE TABLE ordem_servico_tipo (
  ordem_servico_tipo_id     integer PRIMARY KEY,
  ordem_servico_id          integer NOT NULL REFERENCES ordem_servico,
  tab_tipo_ordem_servico_id integer NOT NULL REFERENCES tab_tipo_ordem_servico,
  tab_status_os_tipo_id     integer NOT NULL DEFAULT 1 REFERENCES tab_status_os_tipo,
  data_ini_execucao         timestamp,
  data_fim_execucao         timestamp,
  data_retirada_terminal    timestamp,
  data_entrega_terminal     timestamp,
  terminal_vazio_id         integer REFERENCES fornecedor,
  terminal_cheio_id         integer REFERENCES fornecedor,
  placa                     varchar(10),
  flag_contr_canhoto        char(1) NOT NULL DEFAULT 'N',
  tab_tipo_docto_id         integer REFERENCES tab_tipo_docto,
  id_sistema_externo        varchar(30),
  flag_num_docto            char(1) NOT NULL DEFAULT 'N',
  usuario_fechamento_id     integer,
  data_fechamento           timestamp
);
CREATE INDEX ordem_servico_tipo_os ON ordem_servico_tipo (ordem_servico_id);
