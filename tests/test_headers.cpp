// Tests are linked with GoogleTest's main; so is this, which has none.
