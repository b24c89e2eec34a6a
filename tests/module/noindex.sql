-- The index's name is taken by an index of another table.
create index SUPPLIES_PLUCONTROL_PLUIDX on PLUES (PLU_N_NUMB);
commit;
