-- Incident types, incident recording and the ports of a user's branch.
-- A zero, empty or non-numeric id reaches these functions as null: the lists
-- then come back empty and the recording answers a non-zero retorno.
-- Arguments carry the legacy names; where a column has the same name, the
-- argument is written with the function's name in front.

-- The incident types allowed for the order type of an order-type record, in
-- display order, with the ones already recorded for it: Flag_Selecionado 'S'
-- for a ticked incident, 'N' otherwise; justificativa and flag_tipo_cadastro
-- as recorded (the registration kind the type is offered with when it was
-- never recorded).
CREATE FUNCTION sp_050_con_lista_tipo_incidente_os01(ordem_servico_tipo_id integer)
RETURNS TABLE (
  tab_tipo_incidente_id integer,
  descricao             varchar,
  flag_selecionado      varchar,
  justificativa         varchar,
  flag_contr_canhoto    varchar,
  flag_tipo_cadastro    varchar)
LANGUAGE sql STABLE
AS $$
  SELECT ti.tab_tipo_incidente_id,
         ti.descricao::varchar,
         CASE WHEN inc.flag_selecionado = 'S' THEN 'S' ELSE 'N' END::varchar,
         inc.justificativa::varchar,
         ti.flag_contr_canhoto::varchar,
         COALESCE(inc.flag_tipo_cadastro, perm.flag_tipo_cadastro)::varchar
    FROM ordem_servico_tipo ost
    JOIN tab_tipo_incidente_tipo_os perm
      ON perm.tab_tipo_ordem_servico_id = ost.tab_tipo_ordem_servico_id
    JOIN tab_tipo_incidente ti
      ON ti.tab_tipo_incidente_id = perm.tab_tipo_incidente_id
     AND ti.flag_ativo = 'S'
    LEFT JOIN incidente_os_tipo inc
      ON inc.ordem_servico_tipo_id = ost.ordem_servico_tipo_id
     AND inc.tab_tipo_incidente_id = ti.tab_tipo_incidente_id
   WHERE ost.ordem_servico_tipo_id = sp_050_con_lista_tipo_incidente_os01.ordem_servico_tipo_id
   ORDER BY perm.ordem_exibicao, ti.tab_tipo_incidente_id
$$;

-- Records the incidents of an order-type record, replacing whatever was
-- recorded for it before, as usuario_id. The lists carry one item per incident line:
-- incident type ids separated by ",", justifications by "|", selection flags
-- ('S'/'N') and registration kinds ('M'/'A' or empty) by ",". A null list
-- stands for no lines, except that a null justification or registration-kind
-- list next to n ids stands for n empty items (a single empty item cannot be
-- told from an empty list). The observation is written to the order-type
-- record only when flag_grava_observacao is 'S'.
--
-- Answers one row: retorno 0 when everything was written; otherwise a
-- positive retorno with Msg_Ret saying what was wrong, and nothing written:
--   1 unknown order-type record   2 unknown user
--   3 lists of different lengths  4 an id that is not a number
--   5 a type not allowed for the record's order type (or inactive)
--   6 a type given twice          7 a selection flag other than S/N
--   8 a text too long             9 a registration kind other than M/A
CREATE FUNCTION sp_050_inc_incidente01(
  ordem_servico_tipo_ident integer,
  flag_grava_observacao    varchar,
  lista_incidente          varchar,
  observacao               varchar,
  lista_justificativa      varchar,
  lista_selecionado        varchar,
  usuario_id               integer,
  lista_tipo_cadastro      varchar)
RETURNS TABLE (retorno integer, msg_ret varchar)
LANGUAGE plpgsql
AS $$
DECLARE
  v_tipo_os integer;
  v_ids     text[];
  v_just    text[];
  v_sel     text[];
  v_cad     text[];
  v_n       integer;
  v_item    text;
  v_id      integer;
  v_seen    integer[] := '{}';
BEGIN
  SELECT ost.tab_tipo_ordem_servico_id INTO v_tipo_os
    FROM ordem_servico_tipo ost
   WHERE ost.ordem_servico_tipo_id = ordem_servico_tipo_ident;
  IF NOT FOUND THEN
    retorno := 1;
    msg_ret := 'Ordem de serviço tipo não informada ou inexistente: '
               || COALESCE(ordem_servico_tipo_ident::text, 'null') || '.';
    RETURN NEXT;
    RETURN;
  END IF;

  IF NOT EXISTS (SELECT 1 FROM usuario_internet u
                  WHERE u.usuario_internet_id = usuario_id) THEN
    retorno := 2;
    msg_ret := 'Usuário não informado ou inexistente: '
               || COALESCE(usuario_id::text, 'null') || '.';
    RETURN NEXT;
    RETURN;
  END IF;

  v_ids := COALESCE(string_to_array(lista_incidente, ','), '{}');
  v_n := cardinality(v_ids);
  v_sel := COALESCE(string_to_array(lista_selecionado, ','), '{}');
  v_just := CASE WHEN lista_justificativa IS NULL THEN array_fill(NULL::text, ARRAY[v_n])
                 ELSE string_to_array(lista_justificativa, '|') END;
  v_cad := CASE WHEN lista_tipo_cadastro IS NULL THEN array_fill(NULL::text, ARRAY[v_n])
                ELSE string_to_array(lista_tipo_cadastro, ',') END;
  IF cardinality(v_sel) <> v_n OR cardinality(v_just) <> v_n OR cardinality(v_cad) <> v_n THEN
    retorno := 3;
    msg_ret := format('As listas não têm o mesmo número de itens: %s incidentes, %s '
                      'justificativas, %s seleções e %s tipos de cadastro.',
                      v_n, cardinality(v_just), cardinality(v_sel), cardinality(v_cad));
    RETURN NEXT;
    RETURN;
  END IF;

  -- Every line is checked before anything is written.
  FOR i IN 1 .. v_n LOOP
    v_item := btrim(v_ids[i]);
    IF v_item !~ '^[0-9]{1,9}$' THEN
      retorno := 4;
      msg_ret := format('Tipo de incidente inválido na linha %s: "%s".', i, v_ids[i]);
      RETURN NEXT;
      RETURN;
    END IF;
    v_id := v_item::integer;
    IF NOT EXISTS (SELECT 1
                     FROM tab_tipo_incidente_tipo_os perm
                     JOIN tab_tipo_incidente ti
                       ON ti.tab_tipo_incidente_id = perm.tab_tipo_incidente_id
                    WHERE perm.tab_tipo_ordem_servico_id = v_tipo_os
                      AND perm.tab_tipo_incidente_id = v_id
                      AND ti.flag_ativo = 'S') THEN
      retorno := 5;
      msg_ret := format('Tipo de incidente %s não permitido para o tipo de OS %s.', v_id,
                        v_tipo_os);
      RETURN NEXT;
      RETURN;
    END IF;
    IF v_id = ANY (v_seen) THEN
      retorno := 6;
      msg_ret := format('Tipo de incidente %s informado mais de uma vez.', v_id);
      RETURN NEXT;
      RETURN;
    END IF;
    v_seen := v_seen || v_id;
    IF v_sel[i] IS DISTINCT FROM 'S' AND v_sel[i] IS DISTINCT FROM 'N' THEN
      retorno := 7;
      msg_ret := format('Indicador de seleção inválido na linha %s: "%s".', i, v_sel[i]);
      RETURN NEXT;
      RETURN;
    END IF;
    IF char_length(v_just[i]) > 255 THEN
      retorno := 8;
      msg_ret := format('Justificativa da linha %s com mais de 255 caracteres.', i);
      RETURN NEXT;
      RETURN;
    END IF;
    IF NULLIF(btrim(v_cad[i]), '') IS NOT NULL AND btrim(v_cad[i]) NOT IN ('M', 'A') THEN
      retorno := 9;
      msg_ret := format('Tipo de cadastro inválido na linha %s: "%s".', i, v_cad[i]);
      RETURN NEXT;
      RETURN;
    END IF;
  END LOOP;
  IF flag_grava_observacao = 'S' AND char_length(observacao) > 300 THEN
    retorno := 8;
    msg_ret := 'Observação com mais de 300 caracteres.';
    RETURN NEXT;
    RETURN;
  END IF;

  DELETE FROM incidente_os_tipo inc
   WHERE inc.ordem_servico_tipo_id = ordem_servico_tipo_ident;
  FOR i IN 1 .. v_n LOOP
    INSERT INTO incidente_os_tipo
      (ordem_servico_tipo_id, tab_tipo_incidente_id, flag_selecionado, justificativa,
       flag_tipo_cadastro, usuario_internet_id)
    VALUES
      (ordem_servico_tipo_ident, btrim(v_ids[i])::integer, v_sel[i], NULLIF(v_just[i], ''),
       NULLIF(btrim(v_cad[i]), ''), usuario_id);
  END LOOP;

  IF flag_grava_observacao = 'S' THEN
    UPDATE ordem_servico_tipo ost
       SET observacao = sp_050_inc_incidente01.observacao
     WHERE ost.ordem_servico_tipo_id = ordem_servico_tipo_ident;
  END IF;

  retorno := 0;
  msg_ret := format('%s incidente(s) gravado(s).', v_n);
  RETURN NEXT;
END
$$;

-- The active ports of the user's branch, each with the branch's operation
-- point, by port name. No rows for an unknown or inactive user, a user
-- without a branch, or a branch without active ports.
CREATE FUNCTION sp_050_con_porto_ponto01(usuario_internet_id integer)
RETURNS TABLE (ponto_operacao_id integer, porto_id integer, nome_porto varchar)
LANGUAGE sql STABLE
AS $$
  SELECT f.ponto_operacao_id, p.porto_id, p.nome_porto::varchar
    FROM usuario_internet u
    JOIN filial f ON f.filial_id = u.filial_id
    JOIN porto p ON p.filial_id = f.filial_id AND p.flag_ativo = 'S'
   WHERE u.usuario_internet_id = sp_050_con_porto_ponto01.usuario_internet_id
     AND u.flag_ativo = 'S'
   ORDER BY p.nome_porto, p.porto_id
$$;
