# shellcheck shell=bash
# Clips that stand still, so that it does not matter which frame a screenshot catches. Sourced.

# still NUMBER FILE: a picture that no other number has.
still() {
    /usr/bin/convert -size 640x360 "gradient:hsl($(($1 * 47 % 360)),90%,60%)-hsl($(($1 * 29)),80%,20%)" \
        -fill none -stroke white -strokewidth 12 \
        -draw "circle $((20 * $1)),180 $((20 * $1 + 60)),180" -depth 8 "$2"
}
