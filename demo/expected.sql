-- What the demo's scales must hold after all articles were written with retail prices, worked out
-- by the database itself: "scale article hundredths" per line. Of an article with several promotions
-- the scale keeps what is written last; the only one that has them is for none of these scales.
set heading off;
set list off;

with SCALES as (
    select 1 as NUMB from RDB$DATABASE union all select 2 from RDB$DATABASE union all
    select 3 from RDB$DATABASE
),
PRICED as (
    select P.PLU_NUMB, P.PLU_SCALE_NUMB, P.PLU_FORSCALES, P.PLU_NAME, P.PLU_FOREGHN_NAME,
           B.PLU_BARCODE,
           case
               when PR.PR_PACKET_TYPE in (1, 5) then cast(PR.PR_PRICE as double precision)
               when PR.PR_PACKET_TYPE = 4 then
                   cast(P.PLU_SELL_PRICE as double precision) * (1 + PR.PR_PRICE / 100.0)
               else cast(P.PLU_SELL_PRICE as double precision) * C.CURR_COURCE / C.CURR_COURCEFOR
           end as PRICE
    from PLUES P
    left join N_CURRENCY C on C.CURR_ID = P.PLU_SELLCURR_ID
    left join BARCODES B on B.PLU_NUMB = P.PLU_NUMB
    left join PROMOTIONS PR on PR.PR_PLUNUMB = P.PLU_NUMB
        and PR.PR_PACKET_TYPE in (1, 4, 5) and PR.PR_ISACTIVE_ = 1 and PR.PR_HAVE_CARD_ = 0
        and PR.PR_DAYOFWEEK = '1111111' and PR.PR_FROMTIME is null
        and (PR.PR_FROMDATE is null or current_date between PR.PR_FROMDATE and PR.PR_TODATE)
    where P.PLU_IS_DELETED_ = 0 and P.PLU_SCALE_NUMB is not null
)
select S.NUMB || ' ' || P.PLU_SCALE_NUMB || ' ' || cast(round(P.PRICE * 100) as integer)
from PRICED P
join SCALES S on ',' || replace(P.PLU_FORSCALES, ' ', '') || ',' containing ',' || S.NUMB || ','
    or ',' || replace(P.PLU_FORSCALES, ' ', '') || ',' containing ',0,'
where char_length(P.PLU_BARCODE) = 5 and P.PRICE > 0
    and char_length(P.PLU_NAME) > 0 and char_length(P.PLU_FOREGHN_NAME) > 0
    and P.PLU_SCALE_NUMB between 1 and 9999;
