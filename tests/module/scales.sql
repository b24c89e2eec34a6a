-- Articles that a scale takes, beside those of shop.sql, which have no barcode of five characters.

insert into PLUES values (21, 121, 'Н-121', 'Домати розови', 'ДОМАТИ', 'Домати розови', 0,
    1.1, 3.4, 3.2, '', '0', 1, 1, 1, 1, 1, 0);
insert into PLUES values (22, 122, 'Н-122', 'Краставици', 'КРАСТАВИЦИ', 'Краставици', 0,
    1.1, 2.8, 2.6, '', '0', 1, 1, 1, 1, 1, 0);
insert into PLUES values (23, 123, 'Н-123', 'Пипер червен', 'ПИПЕР', 'Пипер червен', 0,
    1.1, 4.15, 4, '', '0', 1, 1, 1, 1, 1, 0);
insert into BARCODES values (21, '20121');
insert into BARCODES values (22, '20122');
insert into BARCODES values (23, '20123');
insert into LABEL_PRINTING values (21, '5', 'Произход: България', 'Клас I', 'Да се измие');
insert into LABEL_PRINTING values (22, '7', 'Произход: Гърция', '', '');
