// Owns the precompiled GoogleTest header; there is nothing else in it.
