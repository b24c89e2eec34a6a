#!/usr/bin/env bash
# Deletes articles of the demo's scales from the list window, over each scale's own link: first a
# few marked ones, then all. The scales begin with what a finished demo has left in them, with a
# smaller capacity, so that deleting every number takes seconds. What they hold before, between and
# after is left in build/deletes, for test_deletes; a picture of the list with the promotions on top, too.
#
# The demo's programs and the Wine prefix must be there.

source "$(dirname "${BASH_SOURCE[0]}")/../../scripts/lib.sh"
source "$SCRIPTS/wine.sh"
source "$SCRIPTS/fbclient.sh"
source "$SCRIPTS/firebird.sh"
source "$SCRIPTS/network.sh"
source "$SCRIPTS/demo-steps.sh"

DEMO=$BUILD/deletes
DEMO_HOST=$DEMO/TradeHost
DEMO_SCALES=("${DEMO_SCALES[@]/ 9999 / 320 }")

# The columns that the picture of the promotions shows, with their widths; the other 25 are hidden.
DELETES_COLUMNS=(
    PLU_NUMB,90 PLU_NAME,140 PLU_SELL_PRICE,90 PLU_SELL_PRICE_LV,110 HasActivePromotion,110 PromoPrice,100
    CURR_SELL_NAME,110
)

deletes_columns() {
    local column number=0
    printf '[PLUGRID]\r\nHiddenRows=0000000%s\r\naDBGrid_PixelsPerInch=96\r\n' "$(printf '1%.0s' {1..25})"
    for column in "${DELETES_COLUMNS[@]}"; do printf 'aDBGrid_Column%d=%s\r\n' $((++number)) "$column"; done
}

deletes_begin() {
    local name
    rm -f "$DEMO"/*.{before,marked,all}
    while read -r name _; do
        cp "$BUILD/demo/$name.json" "$DEMO/$name.before"
    done < <(demo_scales)
}

# deletes_keep <stage>: the scales have saved themselves on their way to weighing mode.
deletes_keep() {
    local name
    while read -r name _; do
        cp "$DEMO/$name.json" "$DEMO/$name.$1"
    done < <(demo_scales)
}

deletes_marked() {
    demo_drive mark aDBGrid 0 9
    demo_drive mark aDBGrid 250 259
    demo_drive command TElicomPluScaleListForm 1003
    demo_drive window TSetPluForm
    demo_drive click SaveBtn
    demo_drive contains StatusMemo "Обработени"
    demo_drive --seconds 300 enabled SaveBtn
    demo_drive text StatusMemo >"$DEMO/marked.log"
    demo_drive close TSetPluForm
    demo_drive gone TSetPluForm
    deletes_keep marked
}

deletes_all() {
    demo_drive command TElicomPluScaleListForm 1004
    demo_drive window TSetPluForm
    demo_drive click DeleteBtn
    demo_drive command '#32770' 6
    demo_drive contains StatusMemo "Старт"
    demo_drive --seconds 300 enabled OkBtn
    demo_drive text StatusMemo >"$DEMO/all.log"
    demo_drive close TSetPluForm
    deletes_keep all
}

# The list as the guide has it looked at before a run: what is in a promotion on top.
deletes_promotions() {
    demo_drive place TElicomPluScaleListForm 0 0 800 420
    demo_drive title aDBGrid 4
    demo_drive title aDBGrid 4
    demo_drive key aDBGrid 36 # Home
    demo_shot promotions
}

trap demo_end EXIT
trap 'exit 130' INT TERM
mkdir -p "$DEMO"

# The script starts itself once more inside the shop's network.
if [ "${TOLVANE_DEMO_INSIDE:-}" != 1 ]; then
    network_down
    if [ -z "$(demo_network_refusal)" ]; then
        demo_make_network
        network_enter env TOLVANE_DEMO_INSIDE=1 TOLVANE_BUILD="$BUILD" "${BASH_SOURCE[0]}"
    fi
fi

wine_regional 1251 comma
display_start
firebird_start
demo_make_database
deletes_begin
demo_start_scales
demo_plug_in
demo_install_host
deletes_columns >>"$DEMO_HOST/Operations/Tolvane.ini"
demo_open_list
deletes_marked
deletes_all
demo_drive gone TSetPluForm
deletes_promotions
demo_drive close TTradeHostForm
demo_drive gone TTradeHostForm
