velmora_count(compiled-neon cortex-a7
    nothing 37
    blend 705346
    add 1000211
    multiply 1295815
    alpha-key 1569906
    flat-tiles 151258
    raw-tiles 380653
    palette-tiles 1151674
    four-runs-tiles 825409
    short-runs-tiles 1482085
    short-runs-alpha 3435969
    unchanged 21313
    longest-frame 12985339
)
