-- The host's tables as the module reads them.

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
