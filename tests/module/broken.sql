-- The second article's number for the scale is no number.
alter table PLUES alter column PLU_SCALE_NUMB type varchar(20);
commit;
insert into N_CURRENCY values (1, 'лв', 'Лева', 1, 1, 1);
insert into PLUES (PLU_NUMB, PLU_SCALE_NUMB, PLU_NAME, PLU_IS_DELETED_) values (1, '101', 'Първи', 0);
insert into PLUES (PLU_NUMB, PLU_SCALE_NUMB, PLU_NAME, PLU_IS_DELETED_) values (2, 'abc', 'Втори', 0);
commit;
