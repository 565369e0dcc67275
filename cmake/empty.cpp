// Keeps a library target valid while its folders are still empty.
