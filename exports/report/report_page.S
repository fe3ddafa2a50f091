/* The page as the build of page/ leaves it. */
    .section .rodata
    .global xmlaReportPage
    .hidden xmlaReportPage
    .global xmlaReportPageEnd
    .hidden xmlaReportPageEnd
xmlaReportPage:
    .incbin REPORT_PAGE
xmlaReportPageEnd:
    .byte 0
    .section .note.GNU-stack, "", %progbits
