-- A list of 100,000 articles; by name they stand in the opposite order than by number.

insert into N_CURRENCY values (1, 'лв', 'Лева', 1, 1, 1);
insert into N_PRIMARY_MEASUREUNITS values (1, 'кг', 0);
insert into N_WAT values (1, 'Б', 20);
insert into N_PLUGROUPS values (1, 'Плодове');
set term ^ ;
execute block as
    declare N integer = 1;
begin
    while (N <= 100000) do
    begin
        insert into PLUES values (:N, :N, 'Н-' || :N, 'Артикул ' || lpad(100001 - :N, 6, '0'),
            'АРТИКУЛ ' || :N, 'Артикул ' || :N, 0, 1, 2, 1.5, '1', '0', 1, 1, 1, 1, 1, 0);
        N = N + 1;
    end
end^
set term ; ^
commit;
