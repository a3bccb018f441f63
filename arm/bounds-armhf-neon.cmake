velmora_count(compiled-neon cortex-a7
    nothing 36
    blend 705343
    add 1000208
    multiply 1295812
    alpha-key 1569905
    flat-tiles 214328
    raw-tiles 478712
    palette-tiles 1183736
    four-runs-tiles 1197085
    short-runs-tiles 1977495
    short-runs-alpha 4075394
    unchanged 20536
    longest-frame 14118613
)
