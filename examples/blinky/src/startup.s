; Reset handler: sets up a stack and enters main.
        AREA    Reset, CODE, READONLY
        ENTRY
        IMPORT  main
reset   LDR     sp, =0x40004000
        BL      main
stop    B       stop
        END
