#!/usr/bin/env bash
# Makes docs/images, the pictures of the README and the guides, from the screenshots that the tests in Wine and
# the demo have left under build. One that looks the same is not written anew.
#
#   scripts/pictures.sh [PICTURE]...    all of them, or these

source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"
cd "$ROOT"

# picture, screenshot, the part of it. The list is without its host's status bar, which names the database's file.
PICTURES=(
    "list demo/list 1235x813+22+22"
    "promotions deletes/promotions 800x420+26+64"
    "run-before demo/run-before 686x526+297+177"
    "run-during demo/run-during 686x526+297+177"
    "run-after demo/run-after 686x526+297+177"
    "save-menu screenshots/save-popup 612x328+5+27"
    "scales screenshots/settings-list-network-96"
    "scale screenshots/settings-scale-typed-96"
    "scale-udp screenshots/settings-scale-udp-96"
    "scale-serial screenshots/settings-scale-serial-edited-96"
    "find screenshots/settings-find-found-96"
    "columns screenshots/column-chooser"
    "host screenshots/host-demo-shop"
)
# The left end of an active window's caption.
CAPTION="#3296FA"

# A window that has moved or changed its size would be cut off.
pictures_check() { # picture
    local found
    found=$(convert "$1" -crop 40x12+4+6 +repage -fill black +opaque "$CAPTION" -fill white -opaque "$CAPTION" \
        -format '%[fx:mean]' info:)
    awk -v share="$found" 'BEGIN { exit !(share > 0.3) }' ||
        fail "pictures.sh: no window's caption is in the corner of $2; has the window moved?"
}

pictures_make() { # name, screenshot, part
    local from=$BUILD/$2.png to=docs/images/$1.png made crop=()
    [ -s "$from" ] || fail "pictures.sh: there is no $from; run ./test.sh"
    if [ -n "$3" ]; then crop=(-crop "$3" +repage); fi
    made=$(mktemp --suffix=.png)
    convert "$from" "${crop[@]}" -strip -define png:exclude-chunks=date,time "$made"
    if [[ $2 == demo/* || $2 == deletes/* ]]; then pictures_check "$made" "$from"; fi
    if [ -e "$to" ] && compare -metric AE "$made" "$to" null: 2>/dev/null; then
        rm "$made"
    else
        mv "$made" "$to"
        chmod 644 "$to"
        say "$to"
    fi
}

for line in "${PICTURES[@]}"; do
    read -r name screenshot part <<<"$line"
    if [ $# -eq 0 ] || [[ " $* " == *" $name "* ]]; then pictures_make "$name" "$screenshot" "$part"; fi
done
