-- A small shop for the tests of the command, on tables made by demo/schema.sql, in UTF-8. Nothing in it
-- is wrong. Articles 1 and 2 are for every scale, 3 for scale 1, 4 for scale 2.
insert into N_CURRENCY values (1, 'Евро', 'EUR', 1.000000, 1, 1);
insert into N_CURRENCY values (2, 'Български лев', 'лв', 51.129188, 100, 0);
insert into N_PRIMARY_MEASUREUNITS values (1, 'кг', 0);
insert into N_PRIMARY_MEASUREUNITS values (2, 'бр', 1);
insert into N_WAT values (2, 'Б', 20.00);
insert into N_PLUGROUPS values (1, 'Плодове');

insert into PLUES values (101, 'ПЛ-001', 1, 'Ябълки', 'ЯБЪЛКИ', 'Ябълки зелени', 1.5000, 2.5000, 2.1000, 1, 1, 1, 2, 1, 0, '1', '0', 0);
insert into PLUES values (102, 'ПЛ-002', 2, 'Круши', 'КРУШИ', 'Круши жълти', 2.0000, 3.4000, 3.0000, 1, 1, 1, 2, 1, 0, '1', '0', 0);
insert into PLUES values (103, 'ПЛ-003', 3, 'Грозде', 'ГРОЗДЕ', 'Грозде бяло', 2.5000, 4.1000, 3.8000, 1, 1, 1, 2, 1, 0, '1', '1', 0);
insert into PLUES values (104, 'ПЛ-004', 4, 'Домати', 'ДОМАТИ', 'Домати розови', 1.2000, 2.0000, 1.8000, 1, 1, 1, 2, 1, 0, '1', '2', 0);

insert into BARCODES values (101, '20001');
insert into BARCODES values (102, '20002');
insert into BARCODES values (103, '20003');
insert into BARCODES values (104, '20004');

insert into LABEL_PRINTING values (101, 10, 'Произход: България', null, null);
commit;
