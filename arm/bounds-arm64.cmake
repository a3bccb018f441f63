velmora_count(arm64 cortex-a53
    nothing 36
    blend 571603
    add 895106
    multiply 1192906
    alpha-key 1601852
    flat-tiles 107418
    raw-tiles 249604
    palette-tiles 917908
    four-runs-tiles 727814
    short-runs-tiles 1444570
    short-runs-alpha 1944340
    unchanged 7858
    longest-frame 10630425
)
