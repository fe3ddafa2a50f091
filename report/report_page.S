/* The page as the build of page/ leaves it. */
    .section .rodata
    .global kXmlaReportPage
    .hidden kXmlaReportPage
    .global kXmlaReportPageEnd
    .hidden kXmlaReportPageEnd
kXmlaReportPage:
    .incbin REPORT_PAGE
kXmlaReportPageEnd:
    .byte 0
    .section .note.GNU-stack, "", %progbits
