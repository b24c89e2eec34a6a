-- Content that the module tests know by heart.

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
