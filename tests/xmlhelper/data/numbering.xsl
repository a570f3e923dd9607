<?xml version="1.0"?>
<!-- Multi-level and document-wide numbering, position and axes. -->
<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <xsl:template match="/">
    <outline>
      <xsl:for-each select="//heading">
        <h>
          <xsl:attribute name="n"><xsl:number level="multiple" count="chapter|section" format="1.1"/></xsl:attribute>
          <xsl:attribute name="any"><xsl:number level="any" count="heading"/></xsl:attribute>
          <xsl:attribute name="paras"><xsl:value-of select="count(following-sibling::para)"/></xsl:attribute>
          <xsl:attribute name="before"><xsl:value-of select="count(preceding::heading)"/></xsl:attribute>
          <xsl:value-of select="."/>
        </h>
      </xsl:for-each>
      <xsl:for-each select="//para">
        <xsl:if test="position() mod 2 = 1 or position() = last()">
          <p pos="{position()}" of="{last()}" in="{../@id}"><xsl:number level="any" format="(i)"/></p>
        </xsl:if>
      </xsl:for-each>
    </outline>
  </xsl:template>
</xsl:stylesheet>
