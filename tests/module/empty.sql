-- A database without the host's tables.
create table SOMETHING_ELSE (ID integer);
commit;
