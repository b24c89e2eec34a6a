-- The tables of the host's database that the module reads, with the types that this host has chosen;
-- the module reads them whatever they are.

create table N_CURRENCY (
    CURR_ID integer not null primary key,
    CURR_NAME varchar(30),
    CURR_ABR varchar(10),
    CURR_COURCE numeric(15,6),      -- rate to the base currency
    CURR_COURCEFOR integer,         -- units that the rate is quoted for
    CURR_ISBASE_ smallint
);

create table N_PRIMARY_MEASUREUNITS (
    PRIMARYMUNIT_ID integer not null primary key,
    PRIMARYMUNIT_NAME varchar(20),
    PRIMARYMUNIT_ONLY_INT smallint  -- 1: whole quantities only
);

create table N_WAT (
    TAXGRP_NUMB integer not null primary key,
    TAXGRP_NAME varchar(10),
    TAXGRP_WAT numeric(15,2)        -- per cent
);

create table N_PLUGROUPS (
    PGRP_ID integer not null primary key,
    PGRP_NAME varchar(40)
);

create table PLUES (
    PLU_NUMB integer not null primary key,
    PLU_N_NUMB varchar(20),
    PLU_SCALE_NUMB integer,
    PLU_NAME varchar(60),
    PLU_ECR_NAME varchar(30),
    PLU_FOREGHN_NAME varchar(60),
    PLU_BUY_PRICE numeric(15,4),
    PLU_SELL_PRICE numeric(15,4),
    PLU_TRADE_PRICE numeric(15,4),
    PLU_BUYCURR_ID integer references N_CURRENCY,
    PLU_SELLCURR_ID integer references N_CURRENCY,
    PLU_MEASUREUNIT_ID integer references N_PRIMARY_MEASUREUNITS,
    PLU_TAXGROUP_ID integer references N_WAT,
    PLU_GROUP_ID integer references N_PLUGROUPS,
    PLU_SELL_DISABLED_ smallint,
    PLU_FORTERMINALS varchar(20),
    PLU_FORSCALES varchar(40),      -- scale numbers with commas between; 0: every scale
    PLU_IS_DELETED_ smallint
);

create table BARCODES (
    PLU_NUMB integer not null references PLUES,
    PLU_BARCODE varchar(20) not null
);

create table LABEL_PRINTING (
    LABEL_PLUNUMB integer not null references PLUES,
    LABEL_BESTBEFORE integer,       -- days
    LABEL_COMMENT1 varchar(150),
    LABEL_COMMENT2 varchar(150),
    LABEL_COMMENT3 varchar(150)
);

create table SUPPLIES_PLUCONTROL (
    SPCTRL_ID integer not null primary key,
    SPCTRL_PLUNUMB integer not null,
    SPCTRL_SHIPMENTNUMB varchar(50)
);

create table PROMOTIONS (
    PR_ID integer not null primary key,
    PR_PLUNUMB integer not null,
    PR_PRIORITY integer,
    PR_DAYOFWEEK varchar(7),        -- one character per day, Monday first
    PR_FROMTIME time,
    PR_TOTIME time,
    PR_HAVE_CARD_ smallint,
    PR_LIMIT_QUANT numeric(15,3),
    PR_PACKET_FLAG_ smallint,
    PR_PACKET_TYPE integer,         -- 1, 5: new price; 4: per cent; others change no price
    PR_PACKETQUANT numeric(15,3),
    PR_BONUS_PLU integer,
    PR_BONUSQUANT numeric(15,3),
    PR_PRICE numeric(15,4),
    PR_CURRENCY integer references N_CURRENCY,
    PR_COMMENT varchar(100),
    PR_FROMDATE date,
    PR_TODATE date,
    PR_ISACTIVE_ smallint
);

create index PROMOTIONS_PLUIDX on PROMOTIONS (PR_PLUNUMB);
commit;
