<?xml version="1.0"?>
<!-- Number formatting: format-number with named decimal formats, xsl:number. -->
<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <xsl:decimal-format name="european" decimal-separator="," grouping-separator="."/>
  <xsl:decimal-format name="odd" NaN="n/a" infinity="INF" minus-sign="~" percent="%"/>
  <xsl:template match="/catalog">
    <prices total="{format-number(sum(book/price), '#,##0.00')}">
      <xsl:for-each select="book">
        <p id="{@id}">
          <xsl:attribute name="roman"><xsl:number format="I"/></xsl:attribute>
          <xsl:attribute name="alpha"><xsl:number format="a"/></xsl:attribute>
          <xsl:attribute name="padded"><xsl:number format="001"/></xsl:attribute>
          <plain><xsl:value-of select="format-number(price, '0.0')"/></plain>
          <eu><xsl:value-of select="format-number(price * 1000, '#.##0,00', 'european')"/></eu>
          <pct><xsl:value-of select="format-number(stock div 10, '0%')"/></pct>
          <neg><xsl:value-of select="format-number(-price, '0.00;(0.00)')"/></neg>
        </p>
      </xsl:for-each>
      <special nan="{format-number(number('x'), '0', 'odd')}"
               inf="{format-number(1 div 0, '0', 'odd')}"
               minus="{format-number(-3, '0', 'odd')}"
               round="{round(2.5)} {round(-2.5)} {floor(-1.5)} {ceiling(1.2)}"/>
    </prices>
  </xsl:template>
</xsl:stylesheet>
