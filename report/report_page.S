/* The pages as the build of page/ leaves them. */
    .section .rodata
    .global kXmlaReportPage
    .hidden kXmlaReportPage
    .global kXmlaReportPageEnd
    .hidden kXmlaReportPageEnd
    .global kXmlaEstatePage
    .hidden kXmlaEstatePage
    .global kXmlaEstatePageEnd
    .hidden kXmlaEstatePageEnd
kXmlaReportPage:
    .incbin REPORT_PAGE
kXmlaReportPageEnd:
    .byte 0
kXmlaEstatePage:
    .incbin ESTATE_PAGE
kXmlaEstatePageEnd:
    .byte 0
    .section .note.GNU-stack, "", %progbits
