-- A shop of the chain. Scale 1 has four articles (1, 2, 4, 5), scale 2 three (1, 3, 4), scale 3 two (1, 4).
insert into N_CURRENCY values (1, 'Евро', 'EUR', 1.000000, 1, 1);
insert into N_PRIMARY_MEASUREUNITS values (1, 'кг', 0);
insert into N_WAT values (2, 'Б', 20.00);
insert into N_PLUGROUPS values (1, 'Сирена');
insert into PLUES values (1001, 'С-1', 1, 'Краве сирене', 'КРАВЕ СИРЕНЕ', 'Краве сирене', 5.00, 7.10, 6.50, 1, 1, 1, 2, 1, 0, '1', '0', 0);
insert into PLUES values (1002, 'С-2', 2, 'Кашкавал', 'КАШКАВАЛ', 'Кашкавал', 4.00, 6.00, 5.50, 1, 1, 1, 2, 1, 0, '1', '1', 0);
insert into PLUES values (1003, 'С-3', 3, 'Шунка', 'ШУНКА', 'Шунка', 9.00, 12.34, 11.00, 1, 1, 1, 2, 1, 0, '1', '2', 0);
insert into PLUES values (1004, 'С-4', 4, 'Маслини', 'МАСЛИНИ', 'Маслини', 2.00, 3.50, 3.00, 1, 1, 1, 2, 1, 0, '1', '0', 0);
insert into PLUES values (1005, 'С-5', 5, 'Домати', 'ДОМАТИ', 'Домати', 0.50, 0.99, 0.90, 1, 1, 1, 2, 1, 0, '1', '1', 0);
insert into BARCODES values (1001, '20001');
insert into BARCODES values (1002, '20002');
insert into BARCODES values (1003, '20003');
insert into BARCODES values (1004, '20004');
insert into BARCODES values (1005, '20005');
commit;
