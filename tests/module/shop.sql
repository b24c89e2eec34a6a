-- The host's tables as the module reads them, with content that the module tests know by heart.

create table N_CURRENCY (
    CURR_ID integer not null primary key,
    CURR_ABR varchar(10),
    CURR_NAME varchar(30),
    CURR_ISBASE_ smallint,
    CURR_COURCE numeric(15, 4),
    CURR_COURCEFOR integer);
create table N_PRIMARY_MEASUREUNITS (
    PRIMARYMUNIT_ID integer not null primary key,
    PRIMARYMUNIT_NAME varchar(20),
    PRIMARYMUNIT_ONLY_INT smallint);
create table N_WAT (
    TAXGRP_NUMB integer not null primary key,
    TAXGRP_NAME varchar(20),
    TAXGRP_WAT numeric(15, 2));
create table N_PLUGROUPS (
    PGRP_ID integer not null primary key,
    PGRP_NAME varchar(40));
create table PLUES (
    PLU_NUMB integer not null primary key,
    PLU_SCALE_NUMB integer,
    PLU_N_NUMB varchar(20),
    PLU_NAME varchar(60),
    PLU_ECR_NAME varchar(40),
    PLU_FOREGHN_NAME varchar(60),
    PLU_SELL_DISABLED_ smallint,
    PLU_BUY_PRICE numeric(15, 4),
    PLU_SELL_PRICE numeric(15, 4),
    PLU_TRADE_PRICE numeric(15, 4),
    PLU_FORTERMINALS varchar(40),
    PLU_FORSCALES varchar(40),
    PLU_SELLCURR_ID integer,
    PLU_BUYCURR_ID integer,
    PLU_MEASUREUNIT_ID integer,
    PLU_TAXGROUP_ID integer,
    PLU_GROUP_ID integer,
    PLU_IS_DELETED_ smallint);
create table BARCODES (
    PLU_NUMB integer,
    PLU_BARCODE varchar(20));
create table LABEL_PRINTING (
    LABEL_PLUNUMB integer,
    LABEL_BESTBEFORE varchar(20),
    LABEL_COMMENT1 varchar(100),
    LABEL_COMMENT2 varchar(100),
    LABEL_COMMENT3 varchar(100));
create table SUPPLIES_PLUCONTROL (
    SPCTRL_ID integer not null primary key,
    SPCTRL_PLUNUMB integer,
    SPCTRL_SHIPMENTNUMB varchar(50));
create table PROMOTIONS (
    PR_ID integer not null primary key,
    PR_PLUNUMB integer,
    PR_PRIORITY integer,
    PR_DAYOFWEEK varchar(7),
    PR_FROMTIME time,
    PR_TOTIME time,
    PR_HAVE_CARD_ smallint,
    PR_LIMIT_QUANT numeric(15, 3),
    PR_PACKET_FLAG_ smallint,
    PR_PACKET_TYPE smallint,
    PR_PACKETQUANT numeric(15, 3),
    PR_BONUS_PLU integer,
    PR_BONUSQUANT numeric(15, 3),
    PR_PRICE numeric(15, 4),
    PR_CURRENCY integer,
    PR_COMMENT varchar(100),
    PR_FROMDATE date,
    PR_TODATE date,
    PR_ISACTIVE_ smallint);
commit;

insert into N_CURRENCY values (1, 'лв', 'Лева', 1, 1, 1);
insert into N_CURRENCY values (2, 'EUR', 'Евро', 0, 195.583, 100);
insert into N_PRIMARY_MEASUREUNITS values (1, 'кг', 0);
insert into N_PRIMARY_MEASUREUNITS values (2, 'бр', 1);
insert into N_WAT values (1, 'Б', 20);
insert into N_WAT values (2, 'Г', 9);
insert into N_PLUGROUPS values (1, 'Плодове');
insert into N_PLUGROUPS values (2, 'Сирена');

insert into PLUES values (11, 101, 'Н-101', 'Ябълки червени', 'ЯБЪЛКИ ЧЕРВ', 'Ябълки червени етикет', 0,
    1.2, 2.5, 2.25, '1', '0', 1, 1, 1, 1, 1, 0);
insert into PLUES values (12, 102, 'Н-102', 'Круши', 'КРУШИ', 'Круши', 0,
    1.5, 3, 2.7, '1', '1,2', 1, 1, 1, 1, 1, 0);
insert into PLUES values (13, 103, 'Н-103', 'Сирене краве бяло саламурено', 'СИРЕНЕ', 'Сирене краве', 1,
    4.25, 10, 9, '', '2', 2, 2, 2, 2, 2, 0);
insert into PLUES values (14, 104, 'Н-104', 'Кашкавал', 'КАШКАВАЛ', 'Кашкавал', 0,
    9.999, 15.5, 14, '', '0', 1, 1, 1, 2, 2, 0);
insert into PLUES values (15, 105, 'Н-105', 'ябълки зелени', 'ЯБЪЛКИ ЗЕЛ', 'Ябълки зелени', 0,
    1.1, 2.5, 2.2, '', '0', 1, 1, 1, 1, 1, 0);
insert into PLUES values (16, null, 'Н-106', 'Без номер за везна', 'X', 'X', 0,
    1, 1, 1, '', '0', 1, 1, 1, 1, 1, 0);
insert into PLUES values (17, 107, 'Н-107', 'Изтрит', 'X', 'X', 0,
    1, 1, 1, '', '0', 1, 1, 1, 1, 1, 1);
insert into BARCODES values (11, '2800101');
insert into BARCODES values (13, '2800103');
insert into BARCODES values (13, '2800913');
insert into LABEL_PRINTING values (11, '14', 'Произход: България', 'Клас I', 'Да се измие');
insert into LABEL_PRINTING values (12, '', null, null, null);
insert into SUPPLIES_PLUCONTROL values (1, 11, 'L-001');
insert into SUPPLIES_PLUCONTROL values (2, 11, 'L-002');
-- Always active: every day, no hours, no dates.
insert into PROMOTIONS values (501, 14, 1, '1111111', null, null, 0, 0, 0, 4, 0, null, 0, -10, 1, '',
    null, null, 1);
-- Never active: no day.
insert into PROMOTIONS values (502, 12, 1, '0000000', null, null, 0, 0, 0, 1, 0, null, 0, 2, 1, '',
    null, null, 1);
commit;
