velmora_count(arm64 cortex-a53
    nothing 36
    blend 571603
    add 895106
    multiply 1192906
    alpha-key 1601852
    flat-tiles 127300
    raw-tiles 354175
    palette-tiles 1000908
    four-runs-tiles 792038
    short-runs-tiles 1508794
    short-runs-alpha 1989518
    unchanged 7682
    longest-frame 10739826
)
