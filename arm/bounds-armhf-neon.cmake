velmora_count(compiled-neon cortex-a7
    nothing 37
    blend 705346
    add 1000211
    multiply 1295815
    alpha-key 1569906
    flat-tiles 133601
    raw-tiles 304587
    palette-tiles 1097409
    four-runs-tiles 771374
    short-runs-tiles 1428285
    short-runs-alpha 1913967
    unchanged 21006
    longest-frame 11411222
)
