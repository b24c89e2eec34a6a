#include "tests/bench/articles/BigShop.h"

namespace tolvane::bench {

// A statement ends with a semicolon at the end of a line; the other semicolons have a comment after
// them.
std::string BigShopScript(int articles, int promotionEvery) {
    return R"(
insert into N_CURRENCY values (1, 'Български лев', 'лв', 1, 1, 1);
insert into N_CURRENCY values (2, 'Евро', 'EUR', 1.95583, 1, 0);
insert into N_PRIMARY_MEASUREUNITS values (1, 'кг', 0);
insert into N_PRIMARY_MEASUREUNITS values (2, 'бр', 1);
insert into N_WAT values (1, 'А', 9);
insert into N_WAT values (2, 'Б', 20);
execute block as
    declare N integer = 0; /* */
begin
    while (N < 40) do
    begin
        insert into N_PLUGROUPS values (:N, 'Група артикули ' || :N); /* */
        N = N + 1; /* */
    end
end;
execute block as
    declare N integer = 0; /* */
    declare K integer; /* */
begin
    while (N < )" +
           std::to_string(articles) + R"() do
    begin
        N = N + 1; /* */
        K = mod(N * 7919, 99991); /* spreads the names over the alphabet */
        insert into PLUES values (:N, 'КОД-' || :N, :N,
            substring('ябвгдежзийклмнопрстуфхцчшщю' from mod(:K, 27) + 1 for 1) || 'ртикул ' || :K,
            'АРТИКУЛ ' || :K, 'Етикет ' || :K, 1.2345 + mod(:N, 50), 2.34 + mod(:N, 70),
            2.11 + mod(:N, 70), 1 + mod(:N, 2), 1, 1 + mod(:N / 9, 2), 1 + mod(:N / 5, 2),
            mod(:N / 30, 40), 0, '1', '1,2', 0); /* */
        insert into BARCODES values (:N, lpad(mod(:N, 100000), 5, '0')); /* */
        insert into LABEL_PRINTING values (:N, mod(:N, 30), 'Съставки на артикул ' || :K || ', сол',
            'Съхранение от 0 до +4 градуса', 'Произход: България'); /* */
        insert into SUPPLIES_PLUCONTROL values (:N, :N, 'L24' || :N); /* */
        if (mod(N, )" +
           std::to_string(promotionEvery) + R"() = 0) then
            insert into PROMOTIONS values (:N, :N, 1, '1111111', null, null, 0, null, 0, 1, null,
                null, null, 1.99, 1, 'Промоция', null, null, 1); /* */
    end
end;
create index SUPPLIES_PLUCONTROL_PLUIDX on SUPPLIES_PLUCONTROL (SPCTRL_PLUNUMB);
)";
}

}  // namespace tolvane::bench
