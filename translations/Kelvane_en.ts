<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<!-- Empty: the keys are English. It is there to be found, so that a user of English first and Chinese second has English. -->
<TS version="2.1" language="en_US" sourcelanguage="en_US">
</TS>
