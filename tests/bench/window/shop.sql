-- Articles of typical texts, each with a barcode, label texts and a lot, every hundredth with a promotion.
-- ARTICLES stands for their number.

insert into N_CURRENCY values (1, 'лв', 'Български лев', 1, 1, 1);
insert into N_CURRENCY values (2, 'EUR', 'Евро', 0, 1.95583, 1);
insert into N_PRIMARY_MEASUREUNITS values (1, 'кг', 0);
insert into N_PRIMARY_MEASUREUNITS values (2, 'бр', 1);
insert into N_WAT values (1, 'А', 9);
insert into N_WAT values (2, 'Б', 20);
set term ^ ;
execute block as
    declare N integer = 0;
    declare K integer;
begin
    while (N < 40) do
    begin
        insert into N_PLUGROUPS values (:N, 'Група артикули ' || :N);
        N = N + 1;
    end
    N = 0;
    while (N < ARTICLES) do
    begin
        N = N + 1;
        K = mod(N * 7919, 99991);
        insert into PLUES values (:N, :N, 'КОД-' || :N,
            substring('ябвгдежзийклмнопрстуфхцчшщю' from mod(:K, 27) + 1 for 1) || 'ртикул ' || :K,
            'АРТИКУЛ ' || :K, 'Етикет ' || :K, 0, 1.2345 + mod(:N, 50), 2.34 + mod(:N, 70),
            2.11 + mod(:N, 70), '1,2', '0', 1, 1 + mod(:N, 2), 1 + mod(:N / 5, 2),
            1 + mod(:N / 9, 2), mod(:N / 30, 40), 0);
        insert into BARCODES values (:N, lpad(mod(:N, 100000), 5, '0'));
        insert into LABEL_PRINTING values (:N, mod(:N, 30), 'Съставки на артикул ' || :K || ', сол',
            'Съхранение от 0 до +4 градуса', 'Произход: България');
        insert into SUPPLIES_PLUCONTROL values (:N, :N, 'L24' || :N);
        if (mod(N, 100) = 0) then
            insert into PROMOTIONS values (:N, :N, 1, '1111111', null, null, 0, null, 0, 1, null,
                null, null, 1.99, 1, 'Промоция', null, null, 1);
    end
end^
set term ; ^
commit;
create index BARCODES_PLU on BARCODES (PLU_NUMB);
create index LABEL_PRINTING_PLU on LABEL_PRINTING (LABEL_PLUNUMB);
create index PROMOTIONS_PLU on PROMOTIONS (PR_PLUNUMB);
create index SUPPLIES_PLUCONTROL_PLUIDX on SUPPLIES_PLUCONTROL (SPCTRL_PLUNUMB);
commit;
