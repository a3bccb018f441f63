velmora_count(arm64 cortex-a53
    nothing 35
    blend 571600
    add 895103
    multiply 1192903
    alpha-key 1601851
    flat-tiles 177847
    raw-tiles 827056
    palette-tiles 1109800
    four-runs-tiles 1201928
    short-runs-tiles 2121488
    short-runs-alpha 2533829
    unchanged 7097
    longest-frame 11895445
)
